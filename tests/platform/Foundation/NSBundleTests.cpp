#include <Foundation/Foundation.h>

#include "Foundation/testing/MainBundleFolder.h"
#include "Foundation/testing/NSLogCapture.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <optional>

namespace {

/// Sets an environment variable, or unsets it for null, until it goes out of scope.
class Variable {
public:
    Variable(const char* name, const char* value)
        : _name(name)
    {
        if (const char* before = getenv(name))
            _before = before;
        if (value)
            setenv(name, value, 1);
        else
            unsetenv(name);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable()
    {
        if (_before)
            setenv(_name, _before->c_str(), 1);
        else
            unsetenv(_name);
    }

private:
    const char* _name;
    std::optional<std::string> _before;
};

std::string found(const NSString& name, const NSString& extension, const NSString& subdirectory = nullptr)
{
    return NSBundle::mainBundle()->pathForResource(name, extension, subdirectory).UTF8String();
}

std::string localized(const NSString& key, const NSString& value = nullptr, const NSString& table = nullptr)
{
    return NSBundle::mainBundle()->localizedStringForKey(key, value, table).UTF8String();
}

/// The string under "hello" with folders for `languages`, each holding its own name, in an environment.
std::string greeting(
    std::initializer_list<const char*> languages, const char* locale, const char* list = nullptr)
{
    const TemporaryFolder folder;
    for (const std::string language : languages)
        folder.write(language + ".lproj/Localizable.strings", "hello = \"" + language + "\";");
    const Variable all("LC_ALL", locale);
    const Variable preferred("LANGUAGE", list);
    const MainBundleFolder bundle(NSString(folder.path().string()));
    return localized("hello");
}

} // namespace

TEST(NSBundle, MainBundleIsOne)
{
    EXPECT_NE(NSBundle::mainBundle(), nullptr);
    EXPECT_EQ(NSBundle::mainBundle(), NSBundle::mainBundle());
}

TEST(NSBundle, FindsResourcesByNameAndExtension)
{
    const TemporaryFolder folder;
    const std::string json = folder.write("colors.json", "{}");
    const std::string plain = folder.write("README", "");
    const MainBundleFolder bundle(NSString(folder.path().string()));
    EXPECT_EQ(found("colors", "json"), json);
    EXPECT_EQ(found("README", nullptr), plain);
    EXPECT_EQ(found("README", ""), plain);
    EXPECT_EQ(found("colors.json", nullptr), json);
    EXPECT_TRUE(NSBundle::mainBundle()->pathForResource("colors", "pdf").isNull());
    EXPECT_EQ(NSBundle::mainBundle()->pathForResource("colors", "json"), NSString(json));
}

TEST(NSBundle, FindsResourcesInASubdirectory)
{
    const TemporaryFolder folder;
    const std::string icon = folder.write("PDF/icon.pdf", "");
    const std::string deep = folder.write("a/b/c.txt", "");
    const MainBundleFolder bundle(NSString(folder.path().string()));
    EXPECT_EQ(found("icon", "pdf", "PDF"), icon);
    EXPECT_EQ(found("icon", "pdf"), "");
    EXPECT_EQ(found("icon", "pdf", ""), "");
    EXPECT_EQ(found("c", "txt", "a/b"), deep);
    EXPECT_EQ(found("b", nullptr, "a"), folder.file("a/b")); // a folder is a resource too
}

TEST(NSBundle, ReturnsFileURLs)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("d\xC3\xBCrer & 100%.json", "{}");
    const MainBundleFolder bundle(NSString(folder.path().string()));
    const auto url = NSBundle::mainBundle()->URLForResource("d\xC3\xBCrer & 100%", "json");
    ASSERT_TRUE(url);
    EXPECT_TRUE(url->isFileURL());
    EXPECT_EQ(url->path(), NSString(path));
    EXPECT_TRUE(NSBundle::mainBundle()->URLForResource("d\xC3\xBCrer & 100%", "json", nullptr));
    EXPECT_FALSE(NSBundle::mainBundle()->URLForResource("other", "json"));
    EXPECT_FALSE(NSBundle::mainBundle()->URLForResource("other", "json", "PDF"));
}

TEST(NSBundle, NamesThatCouldLeaveTheFolderFindNothing)
{
    const TemporaryFolder outer;
    outer.write("secret.txt", "");
    outer.write("Resources/inside.txt", "");
    outer.write("Resources/sub/x", "");
    const MainBundleFolder bundle(NSString(outer.file("Resources")));
    EXPECT_EQ(found("../secret", "txt"), "");
    EXPECT_EQ(found("sub/../inside", "txt"), "");
    EXPECT_EQ(found("secret", "txt", ".."), "");
    EXPECT_EQ(found("secret", "txt", "sub/../.."), "");
    EXPECT_EQ(found(NSString(outer.file("secret")), "txt"), "");
    EXPECT_EQ(found("secret", "txt", NSString(outer.path().string())), "");
    EXPECT_EQ(found("..", nullptr), "");
    EXPECT_EQ(found("x", "/../../secret.txt"), "");
    EXPECT_EQ(found(NSString(std::string_view("inside.txt\0.pdf", 15)), nullptr), "");
    EXPECT_EQ(found("inside", "txt"), outer.file("Resources/inside.txt"));
    EXPECT_EQ(found("sub/x", nullptr), outer.file("Resources/sub/x"));
    EXPECT_EQ(localized("key", nullptr, "../secret"), "key");
}

TEST(NSBundle, EmptyAndEndlessNamesFindNothing)
{
    const TemporaryFolder folder;
    folder.write(".txt", "");
    const MainBundleFolder bundle(NSString(folder.path().string()));
    EXPECT_EQ(found(nullptr, "txt"), "");
    EXPECT_EQ(found("", "txt"), "");
    EXPECT_EQ(found(nullptr, nullptr), "");
    EXPECT_EQ(found(NSString(std::string(100'000, 'x')), "txt"), "");
}

TEST(NSBundle, WithoutAFolderNothingIsFound)
{
    const MainBundleFolder none{NSString()};
    EXPECT_EQ(found("tmp", nullptr), "");
    EXPECT_EQ(localized("key"), "key");
    EXPECT_GT(NSBundle::mainBundle()->bundleIdentifier().length(), 0U);
}

TEST(NSBundle, EnvironmentNamesTheFolder)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("colors.json", "{}");
    const Variable given("KORVID_RESOURCES", folder.path().c_str());
    {
        const MainBundleFolder forgetTheOldOne{NSString()};
    }
    EXPECT_EQ(found("colors", "json"), path);
}

TEST(NSBundle, FolderIsBesideTheExecutableOrNearIt)
{
    // Only this executable's own place can be tried: the first folder of the three that is there wins.
    const Variable none("KORVID_RESOURCES", nullptr);
    const std::filesystem::path executable = std::filesystem::read_symlink("/proc/self/exe");
    const auto folder = executable.parent_path();
    const std::string mark = "NSBundleTests.mark";
    std::vector<std::filesystem::path> made;
    for (const auto& candidate : {folder.parent_path() / "share" / executable.filename(),
             folder.parent_path() / "Resources", folder / "Resources"}) {
        if (std::filesystem::exists(candidate))
            continue; // the user's own
        std::filesystem::create_directories(candidate / mark);
        made.push_back(candidate);
        {
            const MainBundleFolder forgetTheOldOne{NSString()};
        }
        EXPECT_EQ(found(NSString(mark), nullptr), (candidate / mark).string());
    }
    EXPECT_FALSE(made.empty());
    for (const auto& candidate : made)
        std::filesystem::remove_all(candidate);
    std::error_code notEmpty;
    std::filesystem::remove(folder.parent_path() / "share", notEmpty);
    {
        const MainBundleFolder forgetTheOldOne{NSString()};
    }
}

TEST(NSBundle, IdentifierComesFromTheInfoListElseFromTheExecutable)
{
    const TemporaryFolder folder;
    const NSString executable("FoundationTests");
    {
        const MainBundleFolder bundle(NSString(folder.path().string()));
        EXPECT_EQ(NSBundle::mainBundle()->bundleIdentifier(), executable);
    }
    folder.write("Info.plist",
        "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>org.example.App</string></dict>"
        "</plist>");
    {
        const MainBundleFolder bundle(NSString(folder.path().string()));
        EXPECT_EQ(NSBundle::mainBundle()->bundleIdentifier(), NSString("org.example.App"));
    }
    folder.write("Info.plist", "damaged");
    const MainBundleFolder bundle(NSString(folder.path().string()));
    EXPECT_EQ(NSBundle::mainBundle()->bundleIdentifier(), executable);
}

TEST(NSBundle, MissingKeyReturnsTheValueOrTheKey)
{
    const TemporaryFolder folder;
    folder.write("en.lproj/Localizable.strings", "\"ON\" = \"I\"; \"EMPTY\" = \"\";");
    const MainBundleFolder bundle(NSString(folder.path().string()));
    EXPECT_EQ(localized("ON"), "I");
    EXPECT_EQ(localized("ON", "value"), "I");
    EXPECT_EQ(localized("EMPTY", "value"), "");
    EXPECT_EQ(localized("OFF", "value"), "value");
    EXPECT_EQ(localized("OFF", ""), "OFF");
    EXPECT_EQ(localized("OFF"), "OFF");
    EXPECT_EQ(localized(nullptr, "value"), "value");
    EXPECT_EQ(localized(nullptr), "");
    EXPECT_FALSE(NSBundle::mainBundle()->localizedStringForKey(nullptr, nullptr, nullptr).isNull());
}

TEST(NSBundle, TablesAreFilesOfTheirOwn)
{
    const TemporaryFolder folder;
    folder.write("en.lproj/Localizable.strings", "key = \"main\";");
    folder.write("en.lproj/Other.strings", "key = \"other\";");
    const MainBundleFolder bundle(NSString(folder.path().string()));
    EXPECT_EQ(localized("key"), "main");
    EXPECT_EQ(localized("key", nullptr, ""), "main");
    EXPECT_EQ(localized("key", nullptr, "Other"), "other");
    EXPECT_EQ(localized("key", nullptr, "Missing"), "key");
}

TEST(NSBundle, DamagedTableIsLoggedOnceAndCountsAsEmpty)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("en.lproj/Localizable.strings", "\"a\" = \"b\";\n\"c\" = ;\n");
    const MainBundleFolder bundle(NSString(folder.path().string()));
    const NSLogCapture log;
    EXPECT_EQ(localized("a"), "a");
    EXPECT_EQ(localized("c"), "c");
    EXPECT_EQ(
        log.messages(), std::vector<std::string>{path + ":2: not a table of strings; it counts as empty"});
}

TEST(NSBundle, LanguageIsTheUsers)
{
    EXPECT_EQ(greeting({"de", "en", "fr"}, "de_DE.UTF-8"), "de");
    EXPECT_EQ(greeting({"de", "en", "fr"}, "fr"), "fr");
    EXPECT_EQ(greeting({"de-AT", "de", "en"}, "de_AT.UTF-8@euro"), "de-AT");
    EXPECT_EQ(greeting({"de_AT", "de", "en"}, "de_AT"), "de_AT");
    EXPECT_EQ(greeting({"zh-Hans", "zh-Hant", "en"}, "zh_TW.UTF-8"), "zh-Hant");
    EXPECT_EQ(greeting({"zh-Hans", "zh-Hant", "en"}, "zh_CN.UTF-8"), "zh-Hans");
}

TEST(NSBundle, LanguageFallsBackToTheDevelopmentRegionAndToTheBase)
{
    EXPECT_EQ(greeting({"de", "en", "Base"}, "fi_FI.UTF-8"), "en");
    EXPECT_EQ(greeting({"de", "Base"}, "fi_FI.UTF-8"), "Base");
    EXPECT_EQ(greeting({"de"}, "fi_FI.UTF-8"), "hello");
    EXPECT_EQ(greeting({"de", "en"}, "C"), "en");
    EXPECT_EQ(greeting({"de", "en"}, "POSIX", "de"), "en");
    EXPECT_EQ(greeting({"de", "en"}, "C.UTF-8", "de"), "en");
}

TEST(NSBundle, ListOfLanguagesComesBeforeTheLocale)
{
    EXPECT_EQ(greeting({"de", "en", "fr"}, "de_DE.UTF-8", "fi:fr_CA:de"), "fr");
    EXPECT_EQ(greeting({"de", "en"}, "de_DE.UTF-8", "fi"), "de");
    EXPECT_EQ(greeting({"de", "en"}, "de_DE.UTF-8", ":::"), "de");
    EXPECT_EQ(greeting({"de", "en"}, "de_DE.UTF-8", "../../etc:en"), "en");
}

TEST(NSBundle, InfoListSetsTheDevelopmentRegion)
{
    const TemporaryFolder folder;
    folder.write("Info.plist",
        "<plist "
        "version=\"1.0\"><dict><key>CFBundleDevelopmentRegion</key><string>nl</string></dict></plist>");
    folder.write("en.lproj/Localizable.strings", "hello = en;");
    folder.write("nl.lproj/Localizable.strings", "hello = nl;");
    const MainBundleFolder bundle(NSString(folder.path().string()));
    EXPECT_EQ(localized("hello"), "nl");
}

TEST(NSBundle, LocalizedFilesAreFoundAfterThoseOfTheRoot)
{
    const TemporaryFolder folder;
    const std::string german = folder.write("de.lproj/help.txt", "");
    const std::string english = folder.write("en.lproj/help.txt", "");
    const std::string onlyEnglish = folder.write("en.lproj/more.txt", "");
    const std::string inside = folder.write("sub/de.lproj/deep.txt", "");
    const Variable locale("LC_ALL", "de_DE.UTF-8");
    const MainBundleFolder bundle(NSString(folder.path().string()));
    EXPECT_EQ(found("help", "txt"), german);
    EXPECT_EQ(found("more", "txt"), onlyEnglish);
    EXPECT_EQ(found("deep", "txt", "sub"), inside);
    const std::string root = folder.write("help.txt", "");
    EXPECT_EQ(found("help", "txt"), root);
}
