#pragma once

#include <CoreGraphics/CGBlendMode.h>

#include <algorithm>
#include <array>
#include <cmath>

// The formulas of the blend modes in double precision, for tests.

/// Premultiplied red, green, blue and alpha, 0 to 1.
using BlendColor = std::array<double, 4>;

/// All modes, in ascending order.
inline constexpr CGBlendMode kBlendModes[]{kCGBlendModeNormal, kCGBlendModeMultiply, kCGBlendModeScreen,
    kCGBlendModeOverlay, kCGBlendModeDarken, kCGBlendModeLighten, kCGBlendModeColorDodge,
    kCGBlendModeColorBurn, kCGBlendModeSoftLight, kCGBlendModeHardLight, kCGBlendModeDifference,
    kCGBlendModeExclusion, kCGBlendModeHue, kCGBlendModeSaturation, kCGBlendModeColor, kCGBlendModeLuminosity,
    kCGBlendModeClear, kCGBlendModeCopy, kCGBlendModeSourceIn, kCGBlendModeSourceOut, kCGBlendModeSourceAtop,
    kCGBlendModeDestinationOver, kCGBlendModeDestinationOut, kCGBlendModeXOR, kCGBlendModePlusLighter};

/// The blend function of one component of the separable modes: ISO 32000-2, 11.3.5.2.
inline double blendedSeparately(CGBlendMode mode, double s, double d)
{
    switch (mode) {
    case kCGBlendModeMultiply:
        return s * d;
    case kCGBlendModeScreen:
        return s + d - s * d;
    case kCGBlendModeOverlay:
        return blendedSeparately(kCGBlendModeHardLight, d, s);
    case kCGBlendModeDarken:
        return std::min(s, d);
    case kCGBlendModeLighten:
        return std::max(s, d);
    case kCGBlendModeColorDodge:
        return d == 0 ? 0 : d >= 1 - s ? 1 : d / (1 - s);
    case kCGBlendModeColorBurn:
        return d == 1 ? 1 : 1 - d >= s ? 0 : 1 - (1 - d) / s;
    case kCGBlendModeHardLight:
        return s <= 0.5 ? 2 * s * d : 1 - 2 * (1 - s) * (1 - d);
    case kCGBlendModeSoftLight: {
        const double root = d <= 0.25 ? ((16 * d - 12) * d + 4) * d : std::sqrt(d);
        return s <= 0.5 ? d - (1 - 2 * s) * d * (1 - d) : d + (2 * s - 1) * (root - d);
    }
    case kCGBlendModeDifference:
        return std::abs(s - d);
    case kCGBlendModeExclusion:
        return s + d - 2 * s * d;
    default:
        return s;
    }
}

// The modes that are not separable: ISO 32000-2, 11.3.5.3. The alphas of the colours are ignored.

inline double luminosityOf(const BlendColor& c)
{
    return 0.3 * c[0] + 0.59 * c[1] + 0.11 * c[2];
}
inline double saturationOf(const BlendColor& c)
{
    return std::max({c[0], c[1], c[2]}) - std::min({c[0], c[1], c[2]});
}
inline BlendColor withSaturation(BlendColor c, double saturation)
{
    const double low = std::min({c[0], c[1], c[2]});
    const double range = saturationOf(c);
    for (std::size_t i = 0; i < 3; ++i)
        c[i] = range > 0 ? (c[i] - low) * saturation / range : 0;
    return c;
}
inline BlendColor withLuminosity(BlendColor c, double luminosity)
{
    const double offset = luminosity - luminosityOf(c);
    for (std::size_t i = 0; i < 3; ++i)
        c[i] += offset;
    const double gray = luminosityOf(c);
    const double low = std::min({c[0], c[1], c[2]});
    const double high = std::max({c[0], c[1], c[2]});
    for (std::size_t i = 0; i < 3; ++i) {
        if (low < 0)
            c[i] = gray + (c[i] - gray) * gray / (gray - low);
        if (high > 1)
            c[i] = gray + (c[i] - gray) * (1 - gray) / (high - gray);
    }
    return c;
}
inline BlendColor blendedTogether(CGBlendMode mode, const BlendColor& s, const BlendColor& d)
{
    switch (mode) {
    case kCGBlendModeHue:
        return withLuminosity(withSaturation(s, saturationOf(d)), luminosityOf(d));
    case kCGBlendModeSaturation:
        return withLuminosity(withSaturation(d, saturationOf(s)), luminosityOf(d));
    case kCGBlendModeColor:
        return withLuminosity(s, luminosityOf(d));
    default: // luminosity
        return withLuminosity(d, luminosityOf(s));
    }
}

/// The modes of PDF: each colour alone where only one of them covers, the blend function where both do.
inline BlendColor blendedInPDF(CGBlendMode mode, const BlendColor& s, const BlendColor& d)
{
    const double both = s[3] * d[3];
    BlendColor plainS{};
    BlendColor plainD{};
    BlendColor blend{};
    for (std::size_t i = 0; i < 3 && both > 0; ++i) {
        plainS[i] = s[i] / s[3];
        plainD[i] = d[i] / d[3];
        blend[i] = blendedSeparately(mode, plainS[i], plainD[i]);
    }
    if (mode >= kCGBlendModeHue && both > 0)
        blend = blendedTogether(mode, plainS, plainD);
    BlendColor result{0, 0, 0, s[3] + d[3] - both};
    for (std::size_t i = 0; i < 3; ++i)
        result[i] = s[i] * (1 - d[3]) + d[i] * (1 - s[3]) + both * blend[i];
    return result;
}

/// The result of a mode where it is fully covered.
inline BlendColor blendedExactly(CGBlendMode mode, const BlendColor& s, const BlendColor& d)
{
    if (mode < kCGBlendModeClear)
        return blendedInPDF(mode, s, d);
    const double sa = s[3];
    const double da = d[3];
    const auto combined = [&](double sourceFactor, double destinationFactor) {
        BlendColor result{};
        for (std::size_t i = 0; i < 4; ++i)
            result[i] = std::min(1.0, s[i] * sourceFactor + d[i] * destinationFactor);
        return result;
    };
    switch (mode) {
    case kCGBlendModeCopy:
        return s;
    case kCGBlendModeSourceIn:
        return combined(da, 0);
    case kCGBlendModeSourceOut:
        return combined(1 - da, 0);
    case kCGBlendModeSourceAtop:
        return combined(da, 1 - sa);
    case kCGBlendModeDestinationOver:
        return combined(1 - da, 1);
    case kCGBlendModeDestinationOut:
        return combined(0, 1 - sa);
    case kCGBlendModeXOR:
        return combined(1 - da, 1 - sa);
    case kCGBlendModePlusLighter:
        return combined(1, 1);
    default: // clear
        return {};
    }
}
