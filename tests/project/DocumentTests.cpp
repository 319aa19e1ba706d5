#include "BuildRecords.h"
#include "Documents.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <regex>
#include <set>

namespace fs = std::filesystem;

namespace {

/// The anchors of a document's headings.
std::set<std::string> anchors(const std::string& document)
{
    std::set<std::string> found;
    for (const auto& heading : matches("\n" + prose(document), "\n#+ ([^\n]+)"))
        found.insert(anchorOf(heading));
    return found;
}

/// The targets of a document's links and pictures.
std::vector<std::string> links(const std::string& document)
{
    return matches(prose(document), "\\]\\(([^)\\s]+)\\)");
}

bool isProgram(const std::string& code)
{
    return code.find("int main(") != std::string::npos;
}

bool isForQt(const std::string& code)
{
    return code.find("KorvidWidget") != std::string::npos;
}

/// Whether a block defines a function outside of a class, which cannot stand in another function.
bool definesFunction(const std::string& code)
{
    static const std::regex function("(^|\n)[^\\s/#}][^\n]*\\)[^\n;]*\n\\{\n");
    return std::regex_search(code, function);
}

/// The block in a namespace or function of its own. The compiler reports errors by document and line.
std::string compilable(const CodeBlock& block, int number)
{
    const std::string name = "block" + std::to_string(number);
    const std::string line = "#line " + std::to_string(block.line) + " \"" + block.document + "\"\n";
    if (definesFunction(block.code))
        return "namespace " + name + " {\n" + line + block.code + "}\n";
    return "void " + name + "([[maybe_unused]] CGContextRef context, [[maybe_unused]] CGRect bounds)\n{{\n"
        + line + block.code + "}}\n";
}

/// The errors of the compiler; empty if there are none.
std::string compile(const std::string& source, const std::vector<std::string>& options = {})
{
    const TemporaryFolder folder;
    std::vector<std::string> words{KORVID_COMPILER, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra",
        "-Werror", "-Wno-unused-variable", "-Wno-unused-but-set-variable", "-Wno-unused-function", "-I",
        KORVID_SOURCE_FOLDER "/include"};
    for (const char* framework : {"Foundation", "CoreGraphics", "CoreText", "QuartzCore", "AppKit"})
        words.insert(
            words.end(), {"-I", KORVID_SOURCE_FOLDER "/platform/" + std::string(framework) + "/include"});
    words.insert(words.end(), options.begin(), options.end());
    words.push_back(folder.write("blocks.cpp", source));
    const auto result = runProcess(words);
    return result.exitCode == 0 ? "" : result.error + result.output;
}

constexpr char kIncludes[] = "#include <AppKit/AppKit.h>\n"
                             "#include <KorvidAppKit/KorvidAppKit.h>\n"
                             "#include <cmath>\n#include <string>\n#include <vector>\n";

} // namespace

TEST(Documents, LinkOnlyToFilesAndHeadingsOfTheProject)
{
    std::size_t count = 0;
    for (const auto& document : documents()) {
        for (const auto& link : links(document)) {
            SCOPED_TRACE(document + " links to " + link);
            if (link.starts_with("https://") || link.starts_with("http://"))
                continue;
            ++count;
            const auto hash = link.find('#');
            const fs::path path =
                hash == 0 ? fs::path(document) : fs::path(document).parent_path() / link.substr(0, hash);
            const std::string target = path.lexically_normal().string();
            if (!fs::exists(fs::path(KORVID_SOURCE_FOLDER) / target)) {
                ADD_FAILURE() << "no such file: " << target;
            } else if (hash != std::string::npos && target.ends_with(".md")) {
                EXPECT_TRUE(anchors(target).contains(link.substr(hash + 1)));
            }
        }
    }
    EXPECT_GT(count, 50u);
}

TEST(Documents, DescribeEachPictureInWords)
{
    std::size_t count = 0;
    for (const auto& document : documents()) {
        for (const auto& words : matches(prose(document), "!\\[([^\\]]*)\\]")) {
            ++count;
            EXPECT_GE(words.size(), 10u) << document << ": " << words;
        }
    }
    EXPECT_GT(count, 10u);
}

TEST(Documents, AreListedInTheTableOfPages)
{
    const auto listed = links("docs/README.md");
    for (const auto& document : documents()) {
        if (document == "docs/README.md")
            continue;
        const auto link = fs::path(document).lexically_relative("docs").string();
        EXPECT_EQ(std::count(listed.begin(), listed.end(), link), 1) << link;
    }
    const auto ofReadme = links("README.md");
    EXPECT_GE(std::count(ofReadme.begin(), ofReadme.end(), "docs/README.md"), 1);
}

TEST(Documents, ShowCodeThatCompiles)
{
    std::string source = kIncludes;
    int count = 0;
    for (const auto& document : documents()) {
        for (const auto& block : codeBlocks(document)) {
            // Programs are compared with those that are built.
            if (block.language == "cpp" && !isProgram(block.code) && !isForQt(block.code))
                source += compilable(block, ++count);
        }
    }
    EXPECT_GT(count, 20);
    EXPECT_EQ(compile(source), "");
}

TEST(Documents, ShowCodeForQtProgramsThatCompiles)
{
    std::string source = kIncludes;
    source +=
        "#include <KorvidQt/KorvidWidget.h>\n#include <QtWidgets>\nextern int argc;\nextern char** argv;\n";
    int count = 0;
    for (const auto& block : codeBlocks("docs/embedding.md")) {
        if (block.language == "cpp" && isForQt(block.code))
            source += compilable(block, ++count);
    }
    EXPECT_EQ(count, 2);
    const std::string qt = KORVID_QT_HEADERS;
    EXPECT_EQ(compile(source,
                  {"-fPIC", "-I", KORVID_SOURCE_FOLDER "/qt/include", "-isystem", qt, "-isystem",
                      qt + "/QtCore", "-isystem", qt + "/QtGui", "-isystem", qt + "/QtWidgets"}),
        "");
}

TEST(Documents, ShowProgramsThatAreBuiltAsExamples)
{
    std::size_t count = 0;
    for (const auto& document : documents()) {
        for (const auto& block : codeBlocks(document)) {
            if (block.language != "cpp" || !isProgram(block.code))
                continue;
            ++count;
            const auto examples = filesBelow("examples", "main.cpp");
            EXPECT_TRUE(std::any_of(examples.begin(), examples.end(),
                [&](const auto& example) { return readProjectFile(example) == block.code; }))
                << document << ":" << block.line << "\n"
                << block.code;
        }
    }
    EXPECT_GE(count, 2u);
}

TEST(Documents, NameTheLanguageOfEachBlock)
{
    static const std::set<std::string> languages{"c", "cpp", "cmake", "sh", "text"};
    for (const auto& document : documents()) {
        for (const auto& block : codeBlocks(document))
            EXPECT_TRUE(languages.contains(block.language)) << document << ":" << block.line;
    }
}

TEST(Documents, NameOnlyCommandsOfTheScript)
{
    const auto choice = matches(readProjectFile("korvid"), "\ncase \\$\\{1:-\\} in\n +([a-z |]+)\\)");
    ASSERT_EQ(choice.size(), 1u);
    const auto commands = matches(choice[0], "([a-z]+)");
    ASSERT_GE(commands.size(), 6u);
    std::size_t count = 0;
    for (const auto& document : documents()) {
        for (const auto& command : matches(readProjectFile(document), "\\./korvid ([a-z]+)")) {
            ++count;
            EXPECT_NE(std::find(commands.begin(), commands.end(), command), commands.end())
                << document << " names ./korvid " << command;
        }
    }
    EXPECT_GT(count, 10u);
}

TEST(Documents, NameOnlyTargetsOfTheLibrary)
{
    std::string build;
    for (const char* folder : {"platform", "qt", "src"}) {
        for (const auto& file : filesBelow(folder, "CMakeLists.txt"))
            build += readProjectFile(file);
    }
    std::size_t count = 0;
    for (const auto& document : documents()) {
        for (const auto& target : matches(readProjectFile(document), "Korvid::(\\w+)")) {
            ++count;
            EXPECT_NE(build.find("add_library(Korvid::" + target + " ALIAS"), std::string::npos)
                << document << ": " << target;
        }
    }
    EXPECT_GT(count, 2u);
}

TEST(Documents, NameOnlyOptionsOfTheGallery)
{
    const std::string options = readProjectFile("examples/gallery/options.txt");
    for (const auto& document : documents()) {
        for (const auto& line : matches(readProjectFile(document), "\\./korvid gallery ([^`\n]+)")) {
            for (const auto& option : matches(line, "(--[a-z]+)"))
                EXPECT_NE(options.find(option), std::string::npos) << document << ": " << option;
        }
    }
}

TEST(Documents, NameEachHeaderThatDiffersFromApples)
{
    const auto named = links("docs/for-appkit-developers.md");
    std::size_t count = 0;
    for (const auto& header : publicHeaders()) {
        if (readProjectFile(header).find("Differs:") == std::string::npos)
            continue;
        ++count;
        EXPECT_EQ(std::count(named.begin(), named.end(), "../" + header), 1) << header;
    }
    EXPECT_GT(count, 20u);
}

TEST(Documents, UseNoWordsThatSayNothing)
{
    // What the reader finds easy is for the reader to say.
    static const std::regex filler(
        "\\b(simply|obviously|of course|easily|trivially|basically|time and again|whoever|lent|keeper)\\b",
        std::regex::icase);
    for (const auto& document : documents()) {
        const std::string text = prose(document);
        std::smatch match;
        EXPECT_FALSE(std::regex_search(text, match, filler)) << document << ": " << match.str();
    }
}
