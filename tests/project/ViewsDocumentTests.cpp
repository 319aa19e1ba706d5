#include "BuildRecords.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <regex>

namespace {

/// docs/views.md, the pages of the library's views and services.
std::string document()
{
    return readProjectFile("docs/views.md");
}

/// All that the regular expression's first group matches, in order.
std::vector<std::string> allMatches(const std::string& text, const std::string& expression)
{
    const std::regex regex(expression);
    std::vector<std::string> matches;
    for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
        matches.push_back((*match)[1]);
    return matches;
}

/// The parts of the document that begin with a heading.
std::vector<std::string> sections()
{
    const std::string text = document();
    std::vector<std::string> parts;
    for (auto begin = text.find("\n## "); begin != std::string::npos;) {
        const auto end = text.find("\n## ", begin + 1);
        parts.push_back(text.substr(begin + 1, end - begin));
        begin = end;
    }
    return parts;
}

/// The classes of views that the library's headers declare.
std::vector<std::string> viewClasses()
{
    std::vector<std::string> classes;
    for (const auto& header : filesBelow("include", ".h")) {
        const auto found = allMatches(
            readProjectFile(header), "\nclass KORVID_EXPORT (\\w+)[^:{;]*: public NS(?:View|Control)\\b");
        classes.insert(classes.end(), found.begin(), found.end());
    }
    return classes;
}

} // namespace

TEST(ViewsDocument, HasASectionForEachViewOfTheLibrary)
{
    const auto classes = viewClasses();
    EXPECT_GE(classes.size(), 3u);
    const auto titles = allMatches(document(), "\n## [^\n]*: (\\w+)\n");
    for (const auto& name : classes)
        EXPECT_EQ(std::count(titles.begin(), titles.end(), name), 1) << name;
}

TEST(ViewsDocument, HasAPictureCodeAndAHeaderInEachSection)
{
    ASSERT_GE(sections().size(), 3u);
    for (const auto& section : sections()) {
        SCOPED_TRACE(section);
        const auto pictures = allMatches(section, "!\\[[^\\]]+\\]\\((pictures/[^)]+\\.png)\\)");
        EXPECT_EQ(allMatches(section, "\n```(cpp)\n").size(), 1u);
        if (allMatches(section, "\\]\\((\\.\\./include/[^)]+\\.h)\\)").empty()) {
            // Not everything that the frameworks offer has a look.
            EXPECT_LE(pictures.size(), 1u);
            EXPECT_GE(allMatches(section, "\\]\\((\\.\\./platform/\\w+/include/[^)]+\\.h)\\)").size(), 1u);
        } else {
            EXPECT_EQ(pictures.size(), 1u);
        }
    }
}

TEST(ViewsDocument, LinksOnlyToFilesOfTheProject)
{
    const auto docs = std::filesystem::path(KORVID_SOURCE_FOLDER) / "docs";
    // Without the code, in which "](" begins the parameters of a lambda.
    const auto prose = std::regex_replace(document(), std::regex("```cpp[^`]*```"), "");
    for (const auto& target : allMatches(prose, "\\]\\(([^)]+)\\)"))
        EXPECT_TRUE(std::filesystem::exists(docs / target)) << target;
}

TEST(ViewsDocument, ShowsCodeThatCompiles)
{
    std::string source =
        "#include <AppKit/AppKit.h>\n#include <KorvidAppKit/KorvidAppKit.h>\n#include <vector>\n";
    int count = 0;
    for (const auto& section : sections()) {
        const auto code = section.find("\n```cpp\n");
        ASSERT_NE(code, std::string::npos) << section;
        const auto begin = code + std::string("\n```cpp\n").size();
        source += "void snippet" + std::to_string(++count) + "([[maybe_unused]] CGContextRef context)\n{\n"
            + section.substr(begin, section.find("```\n", begin) - begin) + "}\n";
    }

    const TemporaryFolder folder;
    std::vector<std::string> words{KORVID_COMPILER, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra",
        "-Werror", "-Wno-unused-variable", "-Wno-unused-but-set-variable", "-I",
        KORVID_SOURCE_FOLDER "/include"};
    for (const char* framework : {"Foundation", "CoreGraphics", "CoreText", "QuartzCore", "AppKit"})
        words.insert(
            words.end(), {"-I", KORVID_SOURCE_FOLDER "/platform/" + std::string(framework) + "/include"});
    words.push_back(folder.write("snippets.cpp", source));
    const auto result = runProcess(words);
    EXPECT_EQ(result.exitCode, 0) << source << result.error;
}
