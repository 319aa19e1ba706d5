#include "NSUserDefaultsTest.h"

#include "Foundation/testing/NSLogCapture.h"
#include "support/AllocationCounter.h"
#include "support/Process.h"

#include <limits>
#include <sys/stat.h>

TEST_F(NSUserDefaultsTest, MissingKeyReturnsNeutralValues)
{
    EXPECT_FALSE(defaults().objectForKey("key"));
    EXPECT_TRUE(defaults().stringForKey("key").isNull());
    EXPECT_EQ(defaults().doubleForKey("key"), 0);
    EXPECT_EQ(defaults().integerForKey("key"), 0);
    EXPECT_FALSE(defaults().boolForKey("key"));
    EXPECT_FALSE(defaults().dataForKey("key"));
    EXPECT_FALSE(defaults().arrayForKey("key"));
    EXPECT_FALSE(defaults().dictionaryForKey("key"));
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(NSUserDefaultsTest, ValuesComeBackInThisProcessAndAfterwards)
{
    defaults().setDouble(0.25, "hue");
    defaults().setInteger(-3, "count");
    defaults().setBool(true, "flag");
    defaults().setObject("text", "name");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(defaults().doubleForKey("hue"), 0.25);
        EXPECT_EQ(defaults().integerForKey("count"), -3);
        EXPECT_TRUE(defaults().boolForKey("flag"));
        EXPECT_EQ(defaults().stringForKey("name"), NSString("text"));
        startAnew();
    }
}

TEST_F(NSUserDefaultsTest, NullRemoves)
{
    defaults().setInteger(1, "a");
    defaults().setInteger(2, "b");
    defaults().setInteger(3, "c");
    defaults().setObject(nullptr, "a");
    defaults().removeObjectForKey("b");
    defaults().setObject(NSString(), "c");
    defaults().removeObjectForKey("never set");
    for (int i = 0; i < 2; ++i) {
        for (const char* key : {"a", "b", "c"})
            EXPECT_FALSE(defaults().objectForKey(key)) << key;
        startAnew();
    }
}

TEST_F(NSUserDefaultsTest, NullKeysAreIgnored)
{
    defaults().setInteger(1, nullptr);
    defaults().removeObjectForKey(nullptr);
    EXPECT_FALSE(defaults().objectForKey(nullptr));
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(NSUserDefaultsTest, GettersConvertStringsAndNumbers)
{
    defaults().setObject(" 12.5 apples", "text");
    EXPECT_EQ(defaults().doubleForKey("text"), 12.5);
    EXPECT_EQ(defaults().integerForKey("text"), 12);
    EXPECT_TRUE(defaults().boolForKey("text"));
    defaults().setDouble(-2.75, "real");
    EXPECT_EQ(defaults().integerForKey("real"), -2);
    EXPECT_EQ(defaults().stringForKey("real"), NSString("-2.75"));
    EXPECT_TRUE(defaults().boolForKey("real"));
    defaults().setDouble(1e300, "huge");
    EXPECT_EQ(defaults().integerForKey("huge"), std::numeric_limits<NSInteger>::max());
    defaults().setObject(make<NSArray>(), "array");
    EXPECT_EQ(defaults().doubleForKey("array"), 0);
    EXPECT_TRUE(defaults().stringForKey("array").isNull());
    EXPECT_FALSE(defaults().dataForKey("array"));
    EXPECT_FALSE(defaults().dictionaryForKey("array"));
    EXPECT_TRUE(defaults().arrayForKey("array"));
}

TEST_F(NSUserDefaultsTest, StringsThatMeanYesAreTrue)
{
    for (const char* yes : {"YES", "yes", "y", "True", "t", "1", "0009", " \t+7", "-1"}) {
        defaults().setObject(yes, "key");
        EXPECT_TRUE(defaults().boolForKey("key")) << yes;
    }
    for (const char* no : {"NO", "", "0", "-0", "000", "on", "x1"}) {
        defaults().setObject(no, "key");
        EXPECT_FALSE(defaults().boolForKey("key")) << no;
    }
}

TEST_F(NSUserDefaultsTest, RegisteredValuesShowWhereNothingIsStored)
{
    NSDictionary::Map values;
    values.emplace("a", NSNumber::numberWithInteger(1));
    values.emplace("b", NSNumber::numberWithInteger(2));
    defaults().registerDefaults(make<NSDictionary>(values));
    defaults().registerDefaults(nullptr);
    defaults().setInteger(5, "b");
    EXPECT_EQ(defaults().integerForKey("a"), 1);
    EXPECT_EQ(defaults().integerForKey("b"), 5);
    defaults().removeObjectForKey("b");
    EXPECT_EQ(defaults().integerForKey("b"), 2);
    EXPECT_EQ(contentOf(path).find("<integer>"), std::string::npos);
    startAnew();
    EXPECT_FALSE(defaults().objectForKey("a"));
}

TEST_F(NSUserDefaultsTest, StoresACopyOfWhatCanChange)
{
    const auto inner = make<NSMutableDictionary>();
    inner->setObject(box("before"), "key");
    const auto outer = make<NSArray>(std::vector<RetainPtr<NSObject>>{inner});
    defaults().setObject(outer, "value");
    inner->setObject(box("after"), "key");
    const auto stored = defaults().arrayForKey("value");
    ASSERT_TRUE(stored);
    const auto* dictionary = dynamic_cast<NSDictionary*>(stored->firstObject());
    EXPECT_EQ(dictionary->stringForKey("key"), NSString("before"));
}

TEST_F(NSUserDefaultsTest, ValuesThatAreNoPropertyListAreLoggedAndNotStored)
{
    defaults().setInteger(1, "key");
    const NSLogCapture log;
    defaults().setObject(NSNull::null(), "key");
    defaults().setObject(make<NSArray>(std::vector<RetainPtr<NSObject>>{NSNull::null()}), "key");
    EXPECT_EQ(log.messages().size(), 2U);
    EXPECT_EQ(defaults().integerForKey("key"), 1);
}

TEST_F(NSUserDefaultsTest, EndlessNestingIsRefused)
{
    RetainPtr<NSObject> value = make<NSArray>();
    for (int i = 0; i < 5000; ++i)
        value = make<NSArray>(std::vector<RetainPtr<NSObject>>{value});
    const NSLogCapture log;
    defaults().setObject(value, "deep");
    EXPECT_EQ(log.messages().size(), 1U);
    EXPECT_FALSE(defaults().objectForKey("deep"));

    value = make<NSArray>();
    for (int i = 0; i < 510; ++i)
        value = make<NSArray>(std::vector<RetainPtr<NSObject>>{value});
    defaults().setObject(value, "just so deep");
    startAnew();
    EXPECT_TRUE(defaults().objectForKey("just so deep"));
}

TEST_F(NSUserDefaultsTest, DamagedFileIsLoggedRenamedAndCountsAsEmpty)
{
    const std::string damaged = "<plist version=\"1.0\"><dict><key>half";
    folder.write("app.plist", damaged);
    const NSLogCapture log;
    EXPECT_FALSE(defaults().objectForKey("half"));
    EXPECT_EQ(log.messages(),
        std::vector<std::string>{"User defaults: " + path
            + " is damaged and counts as empty; it was renamed to " + path + ".damaged"});
    defaults().setInteger(1, "key");
    EXPECT_EQ(contentOf(path + ".damaged"), damaged);

    folder.write("app.plist", "damaged again");
    startAnew();
    defaults().setInteger(2, "key");
    EXPECT_EQ(contentOf(path + ".damaged"), damaged);
    EXPECT_EQ(contentOf(path + ".damaged-2"), "damaged again");
    startAnew();
    EXPECT_EQ(defaults().integerForKey("key"), 2);
    EXPECT_EQ(log.messages().size(), 2U);
}

TEST_F(NSUserDefaultsTest, FilesOfAnotherKindCountAsDamaged)
{
    int number = 0;
    for (const char* other : {"binary \xFF\xFE", "<plist version=\"1.0\"><array/></plist>", "<html/>",
             "<plist version=\"1.0\"><dict><key>a</key></dict></plist>",
             "<plist version=\"1.0\"><dict/></plist><more/>"}) {
        folder.write("app.plist", other);
        startAnew();
        const NSLogCapture log;
        defaults().setInteger(++number, "key");
        EXPECT_EQ(log.messages().size(), 1U) << other;
        EXPECT_EQ(defaults().integerForKey("key"), number);
    }
    EXPECT_EQ(otherFiles(folder).size(), 5U);
}

TEST_F(NSUserDefaultsTest, EmptyFileIsNotDamaged)
{
    folder.write("app.plist", "");
    const NSLogCapture log;
    defaults().setInteger(1, "key");
    EXPECT_TRUE(log.messages().empty());
    EXPECT_EQ(otherFiles(folder), std::vector<std::string>());
}

TEST_F(NSUserDefaultsTest, WithoutAWritableFolderValuesStayInMemoryAndThatIsLoggedOnce)
{
    // A file where the folder should be: not even root can write there.
    const std::string obstacle = folder.write("obstacle", "");
    file.reset();
    file.emplace(NSString(obstacle + "/sub/app.plist"));
    const NSLogCapture log;
    defaults().setInteger(1, "a");
    defaults().setInteger(2, "b");
    EXPECT_EQ(defaults().integerForKey("a"), 1);
    EXPECT_EQ(defaults().integerForKey("b"), 2);
    defaults().removeObjectForKey("a");
    EXPECT_FALSE(defaults().objectForKey("a"));
    EXPECT_FALSE(defaults().synchronize());
    ASSERT_EQ(log.messages().size(), 1U);
    EXPECT_EQ(log.messages()[0],
        "User defaults: " + obstacle
            + "/sub/app.plist cannot be written (Not a directory); changes stay in memory");

    // Once there is a folder, the next change takes all that waited along.
    std::filesystem::remove(obstacle);
    defaults().setInteger(3, "c");
    EXPECT_TRUE(defaults().synchronize());
    file.reset();
    file.emplace(NSString(obstacle + "/sub/app.plist"));
    EXPECT_EQ(defaults().integerForKey("b"), 2);
    EXPECT_EQ(defaults().integerForKey("c"), 3);
    EXPECT_FALSE(defaults().objectForKey("a"));
}

TEST_F(NSUserDefaultsTest, WhatCannotBeReadIsNeverWrittenOver)
{
    std::filesystem::create_directory(path);
    const NSLogCapture log;
    defaults().setInteger(1, "key");
    EXPECT_EQ(defaults().integerForKey("key"), 1);
    EXPECT_EQ(log.messages().size(), 1U);
    EXPECT_TRUE(std::filesystem::is_directory(path));
    EXPECT_EQ(otherFiles(folder), std::vector<std::string>());
}

TEST_F(NSUserDefaultsTest, FileOfMoreThan64MegabytesIsNotReadNorWrittenOver)
{
    constexpr std::uintmax_t kLargest = std::uintmax_t{64} << 20;
    for (const std::uintmax_t size : {kLargest + 1, std::uintmax_t{8} << 30}) {
        SCOPED_TRACE(size);
        folder.write("app.plist", "<plist version=\"1.0\"><dict/></plist>");
        std::filesystem::resize_file(path, size); // takes no room on the disk
        startAnew();
        const NSLogCapture log;
        {
            const AllocationCounter allocations;
            EXPECT_FALSE(defaults().objectForKey("key"));
            EXPECT_LT(allocations.largest(), std::size_t{1} << 20);
        }
        defaults().setInteger(1, "key");
        EXPECT_EQ(defaults().integerForKey("key"), 1);
        EXPECT_EQ(log.messages(),
            std::vector<std::string>{
                "User defaults: " + path + " cannot be read (File too large); changes stay in memory"});
        EXPECT_EQ(std::filesystem::file_size(path), size);
    }
    // The largest that is read; what follows the property list in it is damage.
    std::filesystem::resize_file(path, kLargest);
    startAnew();
    const NSLogCapture log;
    EXPECT_FALSE(defaults().objectForKey("key"));
    EXPECT_EQ(otherFiles(folder), std::vector<std::string>{"app.plist.damaged"});
}

TEST_F(NSUserDefaultsTest, DeviceWithoutAnEndIsNotReadForEver)
{
    std::filesystem::create_symlink("/dev/zero", path);
    startAnew();
    const NSLogCapture log;
    EXPECT_FALSE(defaults().objectForKey("key"));
    EXPECT_EQ(log.messages(),
        std::vector<std::string>{
            "User defaults: /dev/zero cannot be read (File too large); changes stay in memory"});
}

TEST_F(NSUserDefaultsTest, ValuesThatMakeTheFileTooLargeStayInMemory)
{
    defaults().setInteger(1, "small");
    const NSLogCapture log;
    const NSString large(std::string(std::size_t{65} << 20, 'x'));
    defaults().setObject(large, "large");
    EXPECT_EQ(log.messages(),
        std::vector<std::string>{
            "User defaults: " + path + " cannot be written (File too large); changes stay in memory"});
    EXPECT_EQ(defaults().stringForKey("large").length(), large.length());
    EXPECT_LT(std::filesystem::file_size(path), 1000U);
    EXPECT_EQ(otherFiles(folder), std::vector<std::string>());

    // Without it, the next change is written.
    defaults().removeObjectForKey("large");
    defaults().setInteger(2, "small");
    startAnew();
    EXPECT_EQ(defaults().integerForKey("small"), 2);
    EXPECT_FALSE(defaults().objectForKey("large"));
}

TEST_F(NSUserDefaultsTest, ValueThatHoldsTooManyObjectsIsLoggedAndNotStored)
{
    RetainPtr<NSObject> value = box("leaf");
    for (int i = 0; i < 64; ++i) // an archive of a few lines makes such a value: 2^64 objects in a file
        value = make<NSArray>(std::vector<RetainPtr<NSObject>>{value, value});
    const NSLogCapture log;
    defaults().setObject(value.get(), "key");
    EXPECT_EQ(log.messages().size(), 1U);
    EXPECT_FALSE(defaults().objectForKey("key"));
}

// Sanitizers need more address space than the process is allowed here.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(NSUserDefaultsTest, FileThatDoesNotFitIntoMemoryEndsInOneLine)
{
    std::string xml = "<plist version=\"1.0\"><dict><key>key</key><array>";
    for (int i = 0; i < 1'000'000; ++i)
        xml += "<array/>";
    folder.write("app.plist", xml + "</array></dict></plist>");
    const std::string writer =
        (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "DefaultsWriter").string();
    const ProcessResult result = runProcess({writer, path, "starve", "40"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "nothing\n");
    EXPECT_NE(result.error.find("User defaults: " + path
                  + " cannot be read (Cannot allocate memory); changes stay in memory\n"),
        std::string::npos)
        << result.error;
    EXPECT_EQ(contentOf(path).size(), xml.size() + std::string_view("</array></dict></plist>").size());
}
#endif

TEST_F(NSUserDefaultsTest, LinkToAFileElsewhereStaysALink)
{
    const std::string target = folder.file("elsewhere/real.plist");
    std::filesystem::create_directory(folder.file("elsewhere"));
    std::filesystem::create_symlink(target, path);
    startAnew();
    defaults().setInteger(1, "key");
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    EXPECT_TRUE(std::filesystem::is_regular_file(target));
    startAnew();
    EXPECT_EQ(defaults().integerForKey("key"), 1);
}

TEST_F(NSUserDefaultsTest, OthersMayNotReadTheFile)
{
    defaults().setInteger(1, "key");
    struct stat status { };
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST(NSUserDefaults, StandardFileIsInTheConfigurationFolder)
{
    {
        const UserDefaultsFile forgetTheOldOne{NSString()};
    }
    NSUserDefaults::standardUserDefaults()->setInteger(1, "NSUserDefaultsTests");
    const std::string path = std::string(getenv("XDG_CONFIG_HOME")) + "/FoundationTests.plist";
    EXPECT_NE(contentOf(path).find("<key>NSUserDefaultsTests</key>"), std::string::npos);
    EXPECT_EQ(NSUserDefaults::standardUserDefaults(), NSUserDefaults::standardUserDefaults());
}
