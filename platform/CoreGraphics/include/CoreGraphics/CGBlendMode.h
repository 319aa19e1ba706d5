#pragma once

#include <cstdint>

/// How a paint S blends with the pixels below, D. Colours are premultiplied, R is the result, a an alpha.
/// The values are Core Graphics' own; those left out are not offered.
enum CGBlendMode : std::int32_t {
    kCGBlendModeNormal = 0,           ///< R = S + D (1 - Sa)
    kCGBlendModeMultiply = 1,         ///< R = S D + S (1 - Da) + D (1 - Sa)
    kCGBlendModeScreen = 2,           ///< R = S + D - S D
    kCGBlendModeClear = 16,           ///< R = 0
    kCGBlendModeCopy = 17,            ///< R = S
    kCGBlendModeSourceIn = 18,        ///< R = S Da
    kCGBlendModeSourceOut = 19,       ///< R = S (1 - Da)
    kCGBlendModeSourceAtop = 20,      ///< R = S Da + D (1 - Sa)
    kCGBlendModeDestinationOver = 21, ///< R = S (1 - Da) + D
    kCGBlendModeDestinationOut = 23,  ///< R = D (1 - Sa)
    kCGBlendModeXOR = 25,             ///< R = S (1 - Da) + D (1 - Sa)
    kCGBlendModePlusLighter = 27,     ///< R = min(1, S + D)
};
