#include "CoreGraphics/pdf/GlyphNames.h"

#include "CoreGraphics/pdf/BaseEncoding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <unordered_map>

namespace {

/// Names of consecutive characters, separated by blanks; "-" steps over a character.
struct NameRun {
    char32_t first;
    std::string_view names;
};

/// The names of the Adobe Glyph List for these characters.
constexpr NameRun kNameRuns[] = {
    {0x0020,
        "space exclam quotedbl numbersign dollar percent ampersand quotesingle parenleft parenright asterisk "
        "plus comma hyphen period slash zero one two three four five six seven eight nine colon semicolon "
        "less equal greater question at A B C D E F G H I J K L M N O P Q R S T U V W X Y Z bracketleft "
        "backslash bracketright asciicircum underscore grave a b c d e f g h i j k l m n o p q r s t u v w x "
        "y z braceleft bar braceright asciitilde"},
    {0x00A0,
        "nbspace exclamdown cent sterling currency yen brokenbar section dieresis copyright ordfeminine "
        "guillemotleft logicalnot softhyphen registered macron degree plusminus twosuperior threesuperior "
        "acute mu paragraph periodcentered cedilla onesuperior ordmasculine guillemotright onequarter "
        "onehalf "
        "threequarters questiondown Agrave Aacute Acircumflex Atilde Adieresis Aring AE Ccedilla Egrave "
        "Eacute Ecircumflex Edieresis Igrave Iacute Icircumflex Idieresis Eth Ntilde Ograve Oacute "
        "Ocircumflex Otilde Odieresis multiply Oslash Ugrave Uacute Ucircumflex Udieresis Yacute Thorn "
        "germandbls agrave aacute acircumflex atilde adieresis aring ae ccedilla egrave eacute ecircumflex "
        "edieresis igrave iacute icircumflex idieresis eth ntilde ograve oacute ocircumflex otilde odieresis "
        "divide oslash ugrave uacute ucircumflex udieresis yacute thorn ydieresis Amacron amacron Abreve "
        "abreve Aogonek aogonek Cacute cacute Ccircumflex ccircumflex Cdotaccent cdotaccent Ccaron ccaron "
        "Dcaron dcaron Dcroat dcroat Emacron emacron Ebreve ebreve Edotaccent edotaccent Eogonek eogonek "
        "Ecaron ecaron Gcircumflex gcircumflex Gbreve gbreve Gdotaccent gdotaccent Gcommaaccent gcommaaccent "
        "Hcircumflex hcircumflex Hbar hbar Itilde itilde Imacron imacron Ibreve ibreve Iogonek iogonek "
        "Idotaccent dotlessi IJ ij Jcircumflex jcircumflex Kcommaaccent kcommaaccent kgreenlandic Lacute "
        "lacute Lcommaaccent lcommaaccent Lcaron lcaron Ldot ldot Lslash lslash Nacute nacute Ncommaaccent "
        "ncommaaccent Ncaron ncaron napostrophe Eng eng Omacron omacron Obreve obreve Ohungarumlaut "
        "ohungarumlaut OE oe Racute racute Rcommaaccent rcommaaccent Rcaron rcaron Sacute sacute Scircumflex "
        "scircumflex Scedilla scedilla Scaron scaron Tcommaaccent tcommaaccent Tcaron tcaron Tbar tbar "
        "Utilde "
        "utilde Umacron umacron Ubreve ubreve Uring uring Uhungarumlaut uhungarumlaut Uogonek uogonek "
        "Wcircumflex wcircumflex Ycircumflex ycircumflex Ydieresis Zacute zacute Zdotaccent zdotaccent "
        "Zcaron "
        "zcaron longs"},
    {0x0192, "florin"},
    {0x01A0, "Ohorn ohorn"},
    {0x01AF, "Uhorn uhorn"},
    {0x01FA, "Aringacute aringacute AEacute aeacute Oslashacute oslashacute"},
    {0x0218, "Scommaaccent scommaaccent"},
    {0x02C6, "circumflex caron"},
    {0x02D8, "breve dotaccent ring ogonek tilde hungarumlaut"},
    {0x0384,
        "tonos dieresistonos Alphatonos - Epsilontonos Etatonos Iotatonos - Omicrontonos - Upsilontonos "
        "Omegatonos iotadieresistonos Alpha Beta Gamma - Epsilon Zeta Eta Theta Iota Kappa Lambda Mu Nu Xi "
        "Omicron Pi Rho - Sigma Tau Upsilon Phi Chi Psi - Iotadieresis Upsilondieresis alphatonos "
        "epsilontonos etatonos iotatonos upsilondieresistonos alpha beta gamma delta epsilon zeta eta theta "
        "iota kappa lambda - nu xi omicron pi rho sigma1 sigma tau upsilon phi chi psi omega iotadieresis "
        "upsilondieresis omicrontonos upsilontonos omegatonos - - theta1 Upsilon1 - - phi1 omega1"},
    {0x0401,
        "afii10023 afii10051 afii10052 afii10053 afii10054 afii10055 afii10056 afii10057 afii10058 afii10059 "
        "afii10060 afii10061 - afii10062 afii10145 afii10017 afii10018 afii10019 afii10020 afii10021 "
        "afii10022 afii10024 afii10025 afii10026 afii10027 afii10028 afii10029 afii10030 afii10031 afii10032 "
        "afii10033 afii10034 afii10035 afii10036 afii10037 afii10038 afii10039 afii10040 afii10041 afii10042 "
        "afii10043 afii10044 afii10045 afii10046 afii10047 afii10048 afii10049 afii10065 afii10066 afii10067 "
        "afii10068 afii10069 afii10070 afii10072 afii10073 afii10074 afii10075 afii10076 afii10077 afii10078 "
        "afii10079 afii10080 afii10081 afii10082 afii10083 afii10084 afii10085 afii10086 afii10087 afii10088 "
        "afii10089 afii10090 afii10091 afii10092 afii10093 afii10094 afii10095 afii10096 afii10097 - "
        "afii10071 afii10099 afii10100 afii10101 afii10102 afii10103 afii10104 afii10105 afii10106 afii10107 "
        "afii10108 afii10109 - afii10110 afii10193"},
    {0x0490, "afii10050 afii10098"},
    {0x04D9, "afii10846"},
    {0x1E80, "Wgrave wgrave Wacute wacute Wdieresis wdieresis"},
    {0x1EF2, "Ygrave ygrave"},
    {0x2013,
        "endash emdash afii00208 - underscoredbl quoteleft quoteright quotesinglbase quotereversed "
        "quotedblleft quotedblright quotedblbase - dagger daggerdbl bullet - onedotenleader twodotenleader "
        "ellipsis"},
    {0x2030, "perthousand - minute second"},
    {0x2039, "guilsinglleft guilsinglright - exclamdbl"},
    {0x2044, "fraction"},
    {0x2070,
        "zerosuperior - - - foursuperior fivesuperior sixsuperior sevensuperior eightsuperior ninesuperior"},
    {0x207F, "nsuperior"},
    {0x20A3, "franc lira - - peseta - - - dong Euro"},
    {0x2105, "afii61248"},
    {0x2111, "Ifraktur - afii61289 - - afii61352 - weierstrass - - - Rfraktur"},
    {0x2122, "trademark - - - Omega"},
    {0x212E, "estimated"},
    {0x2135, "aleph"},
    {0x2153, "onethird twothirds"},
    {0x215B, "oneeighth threeeighths fiveeighths seveneighths"},
    {0x2190, "arrowleft arrowup arrowright arrowdown arrowboth arrowupdn"},
    {0x21A8, "arrowupdnbse"},
    {0x21B5, "carriagereturn"},
    {0x21D0, "arrowdblleft arrowdblup arrowdblright arrowdbldown arrowdblboth"},
    {0x2202,
        "partialdiff existential - emptyset Delta gradient element notelement - suchthat - - - product - "
        "summation minus"},
    {0x2217, "asteriskmath - - radical - - proportional infinity orthogonal angle"},
    {0x2227, "logicaland logicalor intersection - integral"},
    {0x2234, "therefore"},
    {0x223C, "similar"},
    {0x2245, "congruent - - approxequal"},
    {0x2260, "notequal equivalence - - lessequal greaterequal"},
    {0x2282, "propersubset propersuperset notsubset - reflexsubset reflexsuperset"},
    {0x2295, "circleplus - circlemultiply"},
    {0x22A5, "perpendicular"},
    {0x22C5, "dotmath"},
    {0x2302, "house"},
    {0x2310, "revlogicalnot"},
    {0x2320, "integraltp integralbt"},
    {0x2329, "angleleft angleright"},
    {0x239B,
        "parenlefttp parenleftex parenleftbt parenrighttp parenrightex parenrightbt bracketlefttp "
        "bracketleftex bracketleftbt bracketrighttp bracketrightex bracketrightbt bracelefttp braceleftmid "
        "braceleftbt braceex bracerighttp bracerightmid bracerightbt integralex arrowhorizex"},
    {0x23D0, "arrowvertex"},
    {0x25A0, "filledbox"},
    {0x25AA, "H18543 H18551 filledrect"},
    {0x25B2, "triagup"},
    {0x25BA, "triagrt - triagdn"},
    {0x25C4, "triaglf"},
    {0x25CA, "lozenge circle - - - H18533"},
    {0x25D8, "invbullet invcircle"},
    {0x25E6, "openbullet"},
    {0x263A, "smileface invsmileface sun - - - female - male"},
    {0x2660, "spade - - club - heart diamond - - - musicalnote musicalnotedbl"},
    {0xFB00, "ff fi fl ffi ffl"},
};

struct NamedCharacter {
    char32_t character;
    std::string_view name;
};

/// Further names of characters that are named above or have no usual name.
constexpr NamedCharacter kMoreNames[] = {{0x00A0, "nonbreakingspace"}, {0x00AD, "sfthyphen"},
    {0x00AF, "overscore"}, {0x00B5, "mu1"}, {0x00B7, "middot"}, {0x0110, "Dslash"}, {0x0111, "dmacron"},
    {0x0122, "Gcedilla"}, {0x0123, "gcedilla"}, {0x0136, "Kcedilla"}, {0x0137, "kcedilla"},
    {0x013B, "Lcedilla"}, {0x013C, "lcedilla"}, {0x0145, "Ncedilla"}, {0x0146, "ncedilla"},
    {0x0150, "Odblacute"}, {0x0151, "odblacute"}, {0x0156, "Rcedilla"}, {0x0157, "rcedilla"},
    {0x0162, "Tcedilla"}, {0x0163, "tcedilla"}, {0x0170, "Udblacute"}, {0x0171, "udblacute"},
    {0x02C9, "firsttonechinese"}, {0x0394, "Deltagreek"}, {0x03A9, "Omegagreek"}, {0x03BC, "mugreek"},
    {0x2206, "increment"}, {0x2215, "divisionslash"}, {0x2219, "bulletoperator"}, {0x00A9, "copyrightserif"},
    {0x00A9, "copyrightsans"}, {0x00AE, "registerserif"}, {0x00AE, "registersans"},
    {0x2122, "trademarkserif"}, {0x2122, "trademarksans"}, {0x203E, "radicalex"}, {0x20AC, "euro"}};

/// The number N of the name "aN" of each dingbat, by its code.
constexpr std::uint8_t kDingbatsFrom21[] = {1, 2, 202, 3, 4, 5, 119, 118, 117, 11, 12, 13, 14, 15, 16, 105,
    17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 6, 7, 8, 9, 10, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38,
    39, 40, 41, 42, 43, 44, 45, 46, 47, 48, 49, 50, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60, 61, 62, 63, 64,
    65, 66, 67, 68, 69, 70, 71, 72, 73, 74, 203, 75, 204, 76, 77, 78, 79, 81, 82, 83, 84, 97, 98, 99, 100};
constexpr std::uint8_t kDingbatsFromA1[] = {101, 102, 103, 104, 106, 107, 108, 112, 111, 110, 109, 120, 121,
    122, 123, 124, 125, 126, 127, 128, 129, 130, 131, 132, 133, 134, 135, 136, 137, 138, 139, 140, 141, 142,
    143, 144, 145, 146, 147, 148, 149, 150, 151, 152, 153, 154, 155, 156, 157, 158, 159, 160, 161, 163, 164,
    196, 165, 192, 166, 167, 168, 169, 170, 171, 172, 173, 162, 174, 175, 176, 177, 178, 179, 193, 180, 199,
    181, 200, 182, 0, 201, 183, 184, 197, 185, 194, 198, 186, 195, 187, 188, 189, 190, 191};

class Names {
public:
    Names()
    {
        for (const NameRun& run : kNameRuns) {
            char32_t character = run.first;
            for (std::string_view rest = run.names; !rest.empty(); ++character) {
                const std::string_view name = rest.substr(0, rest.find(' '));
                rest.remove_prefix(std::min(rest.size(), name.size() + 1));
                if (name == "-")
                    continue;
                characters.emplace(name, character);
                names.emplace(character, name);
            }
        }
        for (const NamedCharacter& more : kMoreNames)
            characters.emplace(more.name, more.character);
    }

    std::unordered_map<std::string_view, char32_t> characters;
    std::unordered_map<char32_t, std::string_view> names;
};

const Names& names()
{
    static const Names shared;
    return shared;
}

/// The number of hexadecimal digits in capitals, which fills `digits`; 0 for anything else.
char32_t hexadecimal(std::string_view digits)
{
    char32_t number = 0;
    for (const char c : digits) {
        const std::size_t value = std::string_view("0123456789ABCDEF").find(c);
        if (value == std::string_view::npos)
            return 0;
        number = number * 16 + char32_t(value);
    }
    return number;
}

/// The character of "uni20AC" or "u1F600".
char32_t characterOfNumberedName(std::string_view name)
{
    char32_t character = 0;
    if (name.size() == 7 && name.starts_with("uni"))
        character = hexadecimal(name.substr(3));
    else if (name.size() >= 5 && name.size() <= 7 && name.starts_with('u'))
        character = hexadecimal(name.substr(1));
    return character <= 0x10FFFF ? character : 0;
}

} // namespace

char32_t characterOfGlyphName(std::string_view name)
{
    if (const std::size_t dot = name.find('.'); dot != 0)
        name = name.substr(0, dot);
    const auto found = names().characters.find(name);
    return found != names().characters.end() ? found->second : characterOfNumberedName(name);
}

std::string_view glyphNameOfCharacter(char32_t character)
{
    auto found = names().names.find(character);
    if (found == names().names.end())
        found = names().names.find(lookalike(character));
    return found != names().names.end() ? found->second : std::string_view();
}

char32_t characterOfDingbatName(std::string_view name)
{
    unsigned number = 0;
    if (name.size() < 2 || name.size() > 4 || name[0] != 'a' || name[1] == '0')
        return characterOfGlyphName(name);
    for (const char c : name.substr(1)) {
        if (c < '0' || c > '9')
            return characterOfGlyphName(name);
        number = number * 10 + unsigned(c - '0');
    }
    const auto codeIn = [number](std::span<const std::uint8_t> numbers, unsigned first) {
        const auto found = std::find(numbers.begin(), numbers.end(), number);
        return found != numbers.end() ? first + unsigned(found - numbers.begin()) : 0;
    };
    unsigned code = codeIn(kDingbatsFrom21, 0x21);
    if (code == 0)
        code = codeIn(kDingbatsFromA1, 0xA1);
    return code != 0 ? characterInEncoding(BaseEncoding::ZapfDingbats, std::uint8_t(code)) : 0;
}

char32_t lookalike(char32_t character)
{
    static constexpr std::array<char32_t, 2> kPairs[] = {{0x00A0, 0x0020}, {0x00AD, 0x002D}, {0x00B5, 0x03BC},
        {0x2206, 0x0394}, {0x2126, 0x03A9}, {0x2219, 0x00B7}, {0x2215, 0x2044}, {0x02C9, 0x00AF},
        {0x0162, 0x021A}, {0x0163, 0x021B}, {0x2329, 0x27E8}, {0x232A, 0x27E9}, {0x2758, 0x007C}};
    for (const auto& [one, other] : kPairs) {
        if (character == one)
            return other;
        if (character == other)
            return one;
    }
    return 0;
}
