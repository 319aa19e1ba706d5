#include <KorvidAppKit/ZRGraphics.h>

#include <AppKit/NSColor.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace {

constexpr std::uint8_t kNoDigit = 0xFF;

/// The value of each hexadecimal digit, kNoDigit for every other character.
constexpr std::array<std::uint8_t, 256> kDigitValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(kNoDigit);
    for (std::uint8_t digit = 0; digit < 10; ++digit)
        values['0' + digit] = digit;
    for (std::uint8_t digit = 0; digit < 6; ++digit)
        values['a' + digit] = values['A' + digit] = 10 + digit;
    return values;
}();

/// The colour component of each pair value.
constexpr std::array<double, 256> kComponents = [] {
    std::array<double, 256> components{};
    for (int value = 0; value < 256; ++value)
        components[value] = value / 255.0;
    return components;
}();

/// The value of a pair of digits, -1 for any other pair. Reads the second character only after a digit, so
/// never past the end of a string.
int pairOfDigits(const char* pair)
{
    const int high = kDigitValues[static_cast<unsigned char>(pair[0])];
    if (high == kNoDigit)
        return -1;
    const int low = kDigitValues[static_cast<unsigned char>(pair[1])];
    return low == kNoDigit ? -1 : high * 16 + low;
}

/// Parses a string of 6 or 8 digits. Returns false and writes nothing for any other.
bool readDigits(const char* string, double rgba[4])
{
    const int red = pairOfDigits(string);
    if (red < 0)
        return false;
    const int green = pairOfDigits(string + 2);
    if (green < 0)
        return false;
    const int blue = pairOfDigits(string + 4);
    if (blue < 0)
        return false;
    int alpha = 255;
    if (string[6] != '\0') {
        alpha = pairOfDigits(string + 6);
        if (alpha < 0 || string[8] != '\0')
            return false;
    }
    rgba[0] = kComponents[red];
    rgba[1] = kComponents[green];
    rgba[2] = kComponents[blue];
    rgba[3] = kComponents[alpha];
    return true;
}

/// The component of a pair as strtol reads it. Negative values count as 0; none is above 255.
double componentByStrtol(const char* pair)
{
    const char text[] = {pair[0], pair[1], '\0'};
    return kComponents[std::max(std::strtol(text, nullptr, 16), 0L)];
}

} // namespace

void ZRGraphics::hexColor(const char* string, double rgba[4])
{
    if (!string || !rgba || readDigits(string, rgba))
        return;
    const std::size_t length = std::strlen(string);
    if (length != 6 && length != 8)
        return;
    for (std::size_t i = 0; i < 3; ++i)
        rgba[i] = componentByStrtol(string + 2 * i);
    rgba[3] = length == 8 ? componentByStrtol(string + 6) : 1;
}

ZRGraphics::ColorPair::ColorPair(RetainPtr<NSColor> first, RetainPtr<CGColor> second) noexcept
    : platformColor(std::move(first))
    , color(std::move(second))
{
}

ZRGraphics::ColorPair::~ColorPair() = default;

bool ZRGraphics::_genGrayscaleColorForHex(const NSString& hex)
{
    const auto bytes = hex.cStringUsingEncoding(NSASCIIStringEncoding);
    if (!bytes)
        return cacheColor(hex, {});

    // Not clamped, unlike the components of the longer forms: "-1" is below black.
    const double gray = static_cast<double>(std::strtol(bytes->c_str(), nullptr, 16)) / 255.0;
    const CGFloat components[] = {gray, 1};
    _colorMap.try_emplace(
        hex, NSColor::colorWithDeviceWhite(gray, 1), adopt(CGColorCreate(csDeviceGray(), components)));
    return true;
}

bool ZRGraphics::_genColorForHex(const NSString& hex)
{
    const NSString key = hex.lowercaseString();
    if (key.length() == 2)
        return _genGrayscaleColorForHex(key);

    Quadruple rgba{};
    if (const auto bytes = key.cStringUsingEncoding(NSASCIIStringEncoding))
        hexColor(bytes->c_str(), rgba.data());
    return cacheColor(key, rgba);
}

bool ZRGraphics::cacheColor(const NSString& key, const Quadruple& rgba)
{
    // An existing entry stays: callers may hold its colour.
    _colorMap.try_emplace(key, NSColor::colorWithSRGBRed(rgba[0], rgba[1], rgba[2], rgba[3]),
        adopt(CGColorCreate(csSRGB(), rgba.data())));
    return true;
}

CGColorRef ZRGraphics::CGColorFromHex(const NSString& hex)
{
    const NSString key = hex.lowercaseString();
    auto found = _colorMap.find(key);
    if (found == _colorMap.end()) {
        _genColorForHex(key);
        found = _colorMap.find(key);
    }
    return found->second.color.get();
}

RetainPtr<NSColor> ZRGraphics::platformColorFromHex(const NSString& hex)
{
    // A new object each time: the cached one is never handed out.
    return NSColor::colorWithCGColor(CGColorFromHex(hex));
}
