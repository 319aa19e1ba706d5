#include "CoreText/FaceName.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

bool isUpper(char c)
{
    return c >= 'A' && c <= 'Z';
}

bool isLower(char c)
{
    return c >= 'a' && c <= 'z';
}

char lowered(char c)
{
    return isUpper(c) ? char(c - 'A' + 'a') : c;
}

/// The words of a name, separated by blanks, hyphens and capital letters.
std::vector<std::string> wordsOf(std::string_view name)
{
    std::vector<std::string> words;
    bool isInWord = false;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const char c = name[i];
        if (c == ' ' || c == '-' || c == '_' || c == ',') {
            isInWord = false;
            continue;
        }
        if (!isInWord || (isUpper(c) && isLower(name[i - 1])))
            words.emplace_back();
        words.back() += c;
        isInWord = true;
    }
    return words;
}

/// Applies a word that names a style to `face`. Returns false, and changes nothing, for any other word.
bool applyStyle(std::string_view word, FaceName& face)
{
    struct Weight {
        std::string_view word;
        int weight;
    };
    static constexpr Weight kWeights[] = {{"ultralight", 200}, {"extralight", 200}, {"thin", 100},
        {"light", 300}, {"regular", 400}, {"roman", 400}, {"normal", 400}, {"book", 400}, {"medium", 500},
        {"semibold", 600}, {"demibold", 600}, {"demi", 600}, {"bold", 700}, {"extrabold", 800},
        {"ultrabold", 800}, {"heavy", 800}, {"black", 900}};

    std::string lower(word);
    std::transform(lower.begin(), lower.end(), lower.begin(), lowered);
    if (lower == "italic" || lower == "oblique")
        return face.isItalic = true;
    if (lower == "condensed" || lower == "narrow")
        return face.isCondensed = true;
    if (lower == "mt" || lower == "ps") // foundries' marks, as in "Arial-BoldMT"
        return true;
    const auto* const found = std::find_if(
        std::begin(kWeights), std::end(kWeights), [&](const Weight& weight) { return weight.word == lower; });
    if (found == std::end(kWeights))
        return false;
    face.weight = found->weight;
    return true;
}

} // namespace

FaceName parseFaceName(const NSString& name)
{
    FaceName face;
    std::vector<std::string> words = wordsOf(name.UTF8String());
    while (!words.empty()) {
        // A weight such as "Ultra Light" is two words.
        if (words.size() > 1 && applyStyle(words[words.size() - 2] + words.back(), face)) {
            words.resize(words.size() - 2);
            continue;
        }
        if (!applyStyle(words.back(), face))
            break;
        words.pop_back();
    }
    for (const std::string& word : words)
        face.family += (face.family.empty() ? "" : " ") + word;
    return face;
}
