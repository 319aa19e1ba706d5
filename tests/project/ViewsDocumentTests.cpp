#include "BuildRecords.h"
#include "Documents.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

/// docs/views.md, the pages of the library's views and services.
std::string document()
{
    return readProjectFile("docs/views.md");
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
        const auto found = matches(
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
    const auto titles = matches(document(), "\n## [^\n]*: (\\w+)\n");
    for (const auto& name : classes)
        EXPECT_EQ(std::count(titles.begin(), titles.end(), name), 1) << name;
}

TEST(ViewsDocument, HasAPictureCodeAndAHeaderInEachSection)
{
    ASSERT_GE(sections().size(), 3u);
    for (const auto& section : sections()) {
        SCOPED_TRACE(section);
        const auto pictures = matches(section, "!\\[[^\\]]+\\]\\((pictures/[^)]+\\.png)\\)");
        EXPECT_EQ(matches(section, "\n```(cpp)\n").size(), 1u);
        if (matches(section, "\\]\\((\\.\\./include/[^)]+\\.h)\\)").empty()) {
            // Not everything that the frameworks offer has a look.
            EXPECT_LE(pictures.size(), 1u);
            EXPECT_GE(matches(section, "\\]\\((\\.\\./platform/\\w+/include/[^)]+\\.h)\\)").size(), 1u);
        } else {
            EXPECT_EQ(pictures.size(), 1u);
        }
    }
}
