#include "Documents.h"

#include "BuildRecords.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <regex>
#include <sstream>
#include <utility>

namespace {

constexpr std::string_view kFence = "```";

/// Calls `line` with each line of a document and with the language of the fenced block that it is in; null
/// outside of blocks, and for the fences.
template <class Line> void forEachLine(const std::string& document, Line line)
{
    std::istringstream lines(readProjectFile(document));
    std::string language;
    bool isInBlock = false;
    int number = 0;
    for (std::string text; std::getline(lines, text);) {
        ++number;
        if (text.starts_with(kFence)) {
            isInBlock = !isInBlock;
            language = text.substr(kFence.size());
            line(number, text, nullptr, true);
        } else {
            line(number, text, isInBlock ? &language : nullptr, false);
        }
    }
}

} // namespace

std::vector<std::string> documents()
{
    std::vector<std::string> found;
    for (const std::string folder : {"", "docs/"}) {
        for (const auto& entry : std::filesystem::directory_iterator(KORVID_SOURCE_FOLDER "/" + folder)) {
            if (entry.path().extension() == ".md")
                found.push_back(folder + entry.path().filename().string());
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::vector<CodeBlock> codeBlocks(const std::string& document)
{
    std::vector<CodeBlock> blocks;
    bool isNew = true;
    forEachLine(
        document, [&](int number, const std::string& text, const std::string* language, bool isFence) {
            if (isFence)
                isNew = true;
            else if (language && std::exchange(isNew, false))
                blocks.push_back({document, number, *language, text + "\n"});
            else if (language)
                blocks.back().code += text + "\n";
        });
    return blocks;
}

std::string prose(const std::string& document)
{
    std::string result;
    bool afterBlank = true;
    bool isInIndented = false;
    forEachLine(document, [&](int, const std::string& text, const std::string* language, bool isFence) {
        const bool isIndented = text.starts_with("    ");
        isInIndented = isIndented && (afterBlank || isInIndented);
        afterBlank = text.empty();
        if (!language && !isFence && !isInIndented)
            result += text;
        result += "\n";
    });
    return result;
}

std::vector<std::string> matches(std::string_view text, const std::string& expression)
{
    const std::regex regex(expression);
    std::vector<std::string> found;
    using Iterator = std::regex_iterator<std::string_view::const_iterator>;
    for (Iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
        found.push_back((*match)[1]);
    return found;
}

std::string anchorOf(std::string_view heading)
{
    std::string anchor;
    for (const char character : heading) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == ' ')
            anchor += '-';
        else if (std::isalnum(byte) || byte >= 0x80 || character == '-' || character == '_')
            anchor += static_cast<char>(std::tolower(byte));
    }
    return anchor;
}
