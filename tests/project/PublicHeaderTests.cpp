#include "BuildRecords.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <regex>

namespace {

/// A file of a library below the platform layer, or one of ours in a folder that uses such a library.
bool isOfLibraryBelow(const std::string& path)
{
    static const std::regex folder(
        "/(cairo|pango[^/]*|qt[56]?|Qt[A-Z]\\w*|glib-2\\.0|pixman-1|harfbuzz|freetype2|fontconfig|qpdf|"
        "CoreGraphics/pdf)/");
    return std::regex_search(path, folder);
}

std::vector<std::string> libraryFilesAmong(const std::vector<std::string>& paths)
{
    std::vector<std::string> found;
    std::copy_if(paths.begin(), paths.end(), std::back_inserter(found), isOfLibraryBelow);
    return found;
}

using Strings = std::vector<std::string>;

} // namespace

TEST(PublicHeaders, NoneNeedsAHeaderOfALibraryBelow)
{
    const auto objects = dependenciesOfObjects();
    const auto headers = publicHeaders();
    ASSERT_GT(headers.size(), 30u);
    for (const auto& header : headers) {
        // The object of a source that includes this one header and nothing else.
        const auto object = objects.find(
            "tests/project/CMakeFiles/PublicHeaders.dir/headers/" + includedName(header) + ".cpp.o");
        ASSERT_NE(object, objects.end()) << header;
        EXPECT_NE(std::find(object->second.begin(), object->second.end(), header), object->second.end())
            << header;
        EXPECT_EQ(libraryFilesAmong(object->second), Strings{}) << header;
    }
}

TEST(PublicHeaders, EachUmbrellaHeaderIncludesItsWholeFramework)
{
    const auto objects = dependenciesOfObjects();
    const auto headers = publicHeaders();
    for (const std::string framework :
        {"Foundation", "CoreGraphics", "CoreText", "QuartzCore", "AppKit", "KorvidAppKit"}) {
        const auto umbrella = objects.find(
            "tests/project/CMakeFiles/PublicHeaders.dir/headers/" + framework + "/" + framework + ".h.cpp.o");
        ASSERT_NE(umbrella, objects.end()) << framework;
        std::size_t found = 0;
        for (const auto& header : headers) {
            const bool belongs = includedName(header).starts_with(framework + "/");
            // Applications write <AppKit/AppKit.h> alone: it includes the frameworks that AppKit builds on.
            if (!belongs && (framework != "AppKit" || header.starts_with("include/")))
                continue;
            ++found;
            EXPECT_NE(
                std::find(umbrella->second.begin(), umbrella->second.end(), header), umbrella->second.end())
                << framework << " lacks " << header;
        }
        EXPECT_GE(found, 2u) << framework;
    }
}

TEST(PublicHeaders, CompileWithoutWarningsThatUsersMayEnable)
{
    std::size_t sources = 0;
    for (const auto& [source, command] : compileCommands()) {
        if (source.find("project/headers/") == std::string::npos)
            continue;
        ++sources;
        for (const char* warning : {" -Wextra", " -Wconversion", " -Wshadow"})
            EXPECT_NE(command.find(warning), std::string::npos) << warning << ": " << command;
    }
    EXPECT_EQ(sources, publicHeaders().size());
}

TEST(PublicHeaders, NeedOnlyIncludeFoldersOfThisProject)
{
    static const std::regex includeFolder("(?:-I|-isystem )(\\S+)");
    std::size_t sources = 0;
    for (const auto& [source, command] : compileCommands()) {
        if (source.find("project/headers/") == std::string::npos)
            continue;
        ++sources;
        for (std::sregex_iterator folder(command.begin(), command.end(), includeFolder), end; folder != end;
             ++folder)
            EXPECT_TRUE((*folder)[1].str().starts_with(KORVID_SOURCE_FOLDER "/")) << command;
    }
    EXPECT_EQ(sources, publicHeaders().size());
}

TEST(Library, IsCompiledWithoutTheIncludePathsOfLibrariesBelow)
{
    std::size_t sources = 0;
    for (const auto& [source, command] : compileCommands()) {
        if (!source.starts_with("src/"))
            continue;
        ++sources;
        static const std::regex flag(
            "(-I|-isystem )\\S*(cairo|pango|[qQ]t[56]|glib|pixman|harfbuzz|freetype)|-DQT_");
        EXPECT_FALSE(std::regex_search(command, flag)) << command;
    }
    EXPECT_EQ(sources, filesBelow("src", ".cpp").size());
    EXPECT_GT(sources, 0u);
}

TEST(Library, IncludesNoFileOfALibraryBelow)
{
    std::size_t sources = 0;
    for (const auto& [object, files] : dependenciesOfObjects()) {
        if (object.find("/KorvidAppKit.dir/") == std::string::npos)
            continue;
        ++sources;
        EXPECT_EQ(libraryFilesAmong(files), Strings{}) << object;
    }
    EXPECT_GT(sources, 0u);
}

TEST(PlatformLayer, NamesLibrariesOnlyInTheirFolders)
{
    std::size_t sourcesThatKnowCairo = 0;
    std::size_t sourcesThatKnowQt = 0;
    for (const auto& [object, files] : dependenciesOfObjects()) {
        if (object.find("/KorvidPlatform.dir/") == std::string::npos)
            continue;
        if (!isOfLibraryBelow(object)) {
            // Headers of ours in those folders may be included where they need no header of the library.
            auto found = libraryFilesAmong(files);
            std::erase_if(found, [](const auto& path) { return path.starts_with("platform/"); });
            EXPECT_EQ(found, Strings{}) << object;
            continue;
        }
        // This proves that the names above are those under which the libraries' headers are found.
        const auto found = libraryFilesAmong(files);
        sourcesThatKnowCairo += std::any_of(
            found.begin(), found.end(), [](const auto& path) { return path.ends_with("/cairo.h"); });
        sourcesThatKnowQt += std::any_of(
            found.begin(), found.end(), [](const auto& path) { return path.ends_with("/qglobal.h"); });
    }
    EXPECT_GT(sourcesThatKnowCairo, 0u);
    EXPECT_GT(sourcesThatKnowQt, 0u);
}
