#include "CoreGraphics/pdf/BaseEncoding.h"

#include <string_view>

namespace {

// The characters of consecutive codes; a blank where the encoding has none. All encodings of letters have
// ASCII below.

constexpr std::u16string_view kStandardFromA1 =
    u"¡¢£⁄¥ƒ§¤'“«‹›ﬁﬂ –†‡· ¶•‚„”»…‰ ¿ `´ˆ˜¯˘˙¨ ˚¸ ˝˛ˇ—                Æ ª    ŁØŒº     æ   ı  łøœß    ";
constexpr std::u16string_view kWinAnsiFrom80 = u"€•‚ƒ„…†‡ˆ‰Š‹Œ•Ž••‘’“”•–—˜™š›œ•žŸ";
constexpr std::u16string_view kMacRomanFrom80 = u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫"
                                                u"ªºΩæø¿¡¬√ƒ≈∆«»… ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄¤‹›ﬁﬂ‡·‚„‰ÂÊÁ"
                                                u"ËÈÍÎÏÌÓÔ ÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
constexpr std::u16string_view kSymbolFrom21 =
    u"!∀#∃%&∋()∗+,−./0123456789:;<=>?≅ΑΒΧ∆ΕΦΓΗΙϑΚΛΜΝΟΠΘΡΣΤΥςΩΞΨΖ[∴]⊥_‾αβχδεφγηιϕκλµνοπθρστυϖωξψζ{|}∼";
constexpr std::u16string_view kSymbolFromA0 =
    u"€ϒ′≤⁄∞ƒ♣♦♥♠↔←↑→↓°±″≥×∝∂•÷≠≡≈…⏐⎯↵ℵℑℜ℘⊗⊕∅∩∪⊃⊇⊄⊂⊆∈∉∠∇®©™∏√⋅¬∧∨⇔⇐⇑⇒⇓◊〈®©™∑⎛⎜⎝⎡⎢⎣⎧⎨⎩⎪ 〉∫⌠⎮⌡⎞⎟⎠⎤⎥⎦⎫⎬⎭ ";

static_assert(kStandardFromA1.size() == 0xFF - 0xA1 + 1);
static_assert(kWinAnsiFrom80.size() == 0x20);
static_assert(kMacRomanFrom80.size() == 0x80);
static_assert(kSymbolFrom21.size() == 0x7E - 0x21 + 1);
static_assert(kSymbolFromA0.size() == 0x60);

/// The character of `code` in a table that starts at `first`; 0 outside and for a blank.
char32_t characterIn(std::u16string_view table, std::uint8_t first, std::uint8_t code)
{
    if (code < first || code - first >= int(table.size()))
        return 0;
    const char16_t character = table[std::size_t(code - first)];
    return character != u' ' ? character : 0;
}

bool isASCII(std::uint8_t code)
{
    return code >= 0x20 && code < 0x7F;
}

char32_t characterInStandard(std::uint8_t code)
{
    if (code == '\'')
        return U'’';
    if (code == '`')
        return U'‘';
    return isASCII(code) ? code : characterIn(kStandardFromA1, 0xA1, code);
}

char32_t characterInWinAnsi(std::uint8_t code)
{
    if (isASCII(code))
        return code;
    if (code >= 0x80 && code < 0xA0)
        return characterIn(kWinAnsiFrom80, 0x80, code);
    switch (code) {
    case 0x7F:
        return U'•'; // codes without a character are bullets
    case 0xA0:
        return U' ';
    case 0xAD:
        return U'-';
    default:
        return code >= 0xA0 ? code : 0;
    }
}

char32_t characterInMacRoman(std::uint8_t code)
{
    if (isASCII(code))
        return code;
    return code == 0xCA ? U' ' : characterIn(kMacRomanFrom80, 0x80, code);
}

char32_t characterInSymbol(std::uint8_t code)
{
    if (code == 0x20)
        return U' ';
    const char32_t low = characterIn(kSymbolFrom21, 0x21, code);
    return low != 0 ? low : characterIn(kSymbolFromA0, 0xA0, code);
}

/// Unicode has most dingbats in the order of their codes; the exceptions had a place elsewhere before.
char32_t characterInZapfDingbats(std::uint8_t code)
{
    struct Exception {
        std::uint8_t code;
        char16_t character;
    };
    static constexpr Exception kExceptions[] = {{0x20, u' '}, {0x25, u'☎'}, {0x2A, u'☛'}, {0x2B, u'☞'},
        {0x48, u'★'}, {0x6C, u'●'}, {0x6E, u'■'}, {0x73, u'▲'}, {0x74, u'▼'}, {0x75, u'◆'}, {0x77, u'◗'},
        {0xA8, u'♣'}, {0xA9, u'♦'}, {0xAA, u'♥'}, {0xAB, u'♠'}, {0xD5, u'→'}, {0xD6, u'↔'}, {0xD7, u'↕'},
        {0xF0, 0}};
    for (const Exception& exception : kExceptions)
        if (exception.code == code)
            return exception.character;
    if (code >= 0x21 && code <= 0x7E)
        return char32_t(0x2701 + code - 0x21);
    if (code >= 0xAC && code <= 0xB5)
        return char32_t(0x2460 + code - 0xAC); // digits in circles
    if (code >= 0xA1 && code <= 0xFE)
        return char32_t(0x2761 + code - 0xA1);
    return 0;
}

} // namespace

char32_t characterInEncoding(BaseEncoding encoding, std::uint8_t code)
{
    switch (encoding) {
    case BaseEncoding::Standard:
        return characterInStandard(code);
    case BaseEncoding::WinAnsi:
        return characterInWinAnsi(code);
    case BaseEncoding::MacRoman:
        return characterInMacRoman(code);
    case BaseEncoding::Symbol:
        return characterInSymbol(code);
    case BaseEncoding::ZapfDingbats:
        return characterInZapfDingbats(code);
    }
    return 0;
}

std::optional<std::uint8_t> codeInEncoding(BaseEncoding encoding, char32_t character)
{
    for (int code = 0; code < 256 && character != 0; ++code)
        if (characterInEncoding(encoding, std::uint8_t(code)) == character)
            return std::uint8_t(code);
    return std::nullopt;
}
