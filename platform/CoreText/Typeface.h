#pragma once

#include "CoreText/FontFace.h"

#include <Foundation/NSString.h>

#include <memory>

/// A font without its size: the face that was found for a name.
struct Typeface {
    NSString name;   ///< the face's PostScript name
    NSString family; ///< such as "Liberation Sans"
    bool isBold = false;
    bool isItalic = false;
    std::shared_ptr<const FontFace> face; ///< null when no font is installed at all
    std::uint32_t serial = 0;             ///< unique

    Typeface() = default;
    Typeface(const Typeface&) = delete;
    Typeface& operator=(const Typeface&) = delete;
    virtual ~Typeface() = default;

    FaceMetrics metrics() const { return face ? face->metrics() : FaceMetrics(); }
};
