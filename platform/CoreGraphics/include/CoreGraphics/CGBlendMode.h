#pragma once

#include <CoreGraphics/CGBase.h>

/// How a source S blends with the destination D into the result R. Colours are premultiplied; Sa and Da are
/// the alphas. The values are those of Core Graphics; missing values are not supported.
///
/// Normal to luminosity are the blend modes of PDF (ISO 32000-2, 11.3.5). They give the alpha
/// Ra = Sa + Da - Sa Da and the colour R = S (1 - Da) + D (1 - Sa) + Sa Da B(s, d), where s and d are the
/// colours that are not premultiplied, and B is given below. The formulas of the other modes hold for colour
/// and alpha alike. A destination without alpha counts as opaque; in an alpha-only destination only the
/// formula of the alpha is used, so that all modes of PDF are the same as normal there.
typedef enum KORVID_ENUM(CGBlendMode, int32_t) {
    kCGBlendModeNormal = 0,      ///< B = s, hence R = S + D (1 - Sa)
    kCGBlendModeMultiply = 1,    ///< B = s d, hence R = S D + S (1 - Da) + D (1 - Sa)
    kCGBlendModeScreen = 2,      ///< B = s + d - s d, hence R = S + D - S D
    kCGBlendModeOverlay = 3,     ///< hard light with s and d exchanged
    kCGBlendModeDarken = 4,      ///< B = min(s, d)
    kCGBlendModeLighten = 5,     ///< B = max(s, d)
    kCGBlendModeColorDodge = 6,  ///< B = min(1, d / (1 - s)); 0 where d is 0, otherwise 1 where s is 1
    kCGBlendModeColorBurn = 7,   ///< B = 1 - min(1, (1 - d) / s); 1 where d is 1, otherwise 0 where s is 0
    kCGBlendModeSoftLight = 8,   ///< darkens where s < 1/2, lightens where s > 1/2; a soft spotlight
    kCGBlendModeHardLight = 9,   ///< B = 2 s d where s <= 1/2, otherwise 1 - 2 (1 - s) (1 - d)
    kCGBlendModeDifference = 10, ///< B = |s - d|
    kCGBlendModeExclusion = 11,  ///< B = s + d - 2 s d
    kCGBlendModeHue = 12,        ///< the hue of s, the saturation and luminosity of d
    kCGBlendModeSaturation = 13, ///< the saturation of s, the hue and luminosity of d
    kCGBlendModeColor = 14,      ///< the hue and saturation of s, the luminosity of d
    kCGBlendModeLuminosity = 15, ///< the luminosity of s, the hue and saturation of d

    kCGBlendModeClear = 16,           ///< R = 0
    kCGBlendModeCopy = 17,            ///< R = S
    kCGBlendModeSourceIn = 18,        ///< R = S Da
    kCGBlendModeSourceOut = 19,       ///< R = S (1 - Da)
    kCGBlendModeSourceAtop = 20,      ///< R = S Da + D (1 - Sa)
    kCGBlendModeDestinationOver = 21, ///< R = S (1 - Da) + D
    kCGBlendModeDestinationOut = 23,  ///< R = D (1 - Sa)
    kCGBlendModeXOR = 25,             ///< R = S (1 - Da) + D (1 - Sa)
    kCGBlendModePlusLighter = 27,     ///< R = min(1, S + D)
} CGBlendMode;
