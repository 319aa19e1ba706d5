#pragma once

#include <cstdint>

/// How a source S blends with the destination D into the result R. Colours are premultiplied; Sa and Da are
/// the alphas. The values are those of Core Graphics; missing values are not supported.
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
