#include "ColorFuzz.h"

#include "Require.h"

#include <AppKit/NSColor.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace {

using RGBA = std::array<double, 4>;

int digitValue(char c)
{
    constexpr std::string_view digits = "0123456789abcdef";
    const auto at = digits.find(c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c);
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

/// The number of two characters by the documented rules: blanks and a sign are accepted first, then the
/// longest run of digits counts. Negative numbers are not clamped.
int pairNumber(std::string_view pair)
{
    const int first = digitValue(pair[0]);
    const int second = digitValue(pair[1]);
    if (first >= 0)
        return second >= 0 ? first * 16 + second : first;
    const bool isBlank = std::string_view(" \t\n\v\f\r").find(pair[0]) != std::string_view::npos;
    if (second < 0 || !(isBlank || pair[0] == '+' || pair[0] == '-'))
        return 0;
    return pair[0] == '-' ? -second : second;
}

double pairComponent(std::string_view pair)
{
    return std::max(pairNumber(pair), 0) / 255.0;
}

RGBA expectedComponents(std::string_view text)
{
    RGBA rgba{0, 0, 0, 1};
    for (std::size_t i = 0; i < text.size() / 2; ++i)
        rgba[i] = pairComponent(text.substr(2 * i, 2));
    return rgba;
}

bool isParsed(std::string_view text)
{
    return text.size() == 6 || text.size() == 8;
}

/// Text that ends at the first NUL, as C strings do.
void checkComponents(const std::string& text)
{
    constexpr RGBA kUntouched{7, 8, 9, 10};
    RGBA rgba = kUntouched;
    ZRGraphics::hexColor(text.c_str(), rgba.data());
    require(rgba == (isParsed(text) ? expectedComponents(text) : kUntouched));
    if (!isParsed(text) || !std::all_of(text.begin(), text.end(), [](char c) { return digitValue(c) >= 0; }))
        return;
    for (std::size_t i = 0; i < text.size() / 2; ++i) {
        const int value = static_cast<int>(std::lround(rgba[i] * 255));
        require(value / 16 == digitValue(text[2 * i]) && value % 16 == digitValue(text[2 * i + 1]));
    }
}

/// A source of colours whose cache stays small.
ZRGraphics* graphics()
{
    static RetainPtr<ZRGraphics> current;
    static int requests = 0;
    if (requests++ % 4096 == 0)
        current = make<ZRGraphics>();
    return current.get();
}

void checkColor(const std::string& text)
{
    const NSString hex{text};
    ZRGraphics* const source = graphics();
    const CGColorRef color = source->CGColorFromHex(hex);
    require(color && source->CGColorFromHex(hex) == color);
    const std::size_t count = CGColorGetNumberOfComponents(color);
    const double* const components = CGColorGetComponents(color);
    if (count == 2) {
        require(hex.lowercaseString().length() == 2 && components[1] == 1);
        require(components[0] >= -15 / 255.0 && components[0] <= 1);
    } else {
        RGBA rgba{};
        std::copy_n(components, count, rgba.begin());
        const bool isASCII = std::all_of(text.begin(), text.end(), [](char c) { return c > 0; });
        if (isASCII)
            require(source->CGColorFromHex(hex.uppercaseString()) == color);
        if (isASCII || hex.length() < 6)
            require(rgba == (isASCII && isParsed(text) ? expectedComponents(text) : RGBA{}));
        require(std::all_of(rgba.begin(), rgba.end(), [](double c) { return c >= 0 && c <= 1; }));
    }
    require(CGColorEqualToColor(source->platformColorFromHex(hex)->CGColor(), color));
}

} // namespace

void fuzzColor(const std::uint8_t* data, std::size_t size)
{
    const std::string text(data, data + std::min<std::size_t>(size, 64));
    checkComponents(text.substr(0, text.find('\0')));
    checkColor(text);
}

std::vector<std::string> colorSeeds()
{
    return {"aa", "01DAFD", "ffffff45", " f+f-1", "0x0X10zz", "-1", "f\xC3\xA4", "", "0123456789abcdef"};
}
