#pragma once

#include "CoreGraphics/pdf/PDFObject.h"

#include <CoreGraphics/CGPath.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

class PDFRecording;

/// A font of a PDF page: what the bytes of a string mean, how far glyphs are apart, and their shapes. Lengths
/// are in ems (text space at size 1). Used while a page is recorded.
class PDFFont {
public:
    /// Never null: a font that cannot be used has no outlines, which is logged, and the widths that the file
    /// states.
    static std::shared_ptr<const PDFFont> make(const PDFObject& dictionary, PDFRecording& recording);

    /// A character code, and the number of bytes that it takes in a string.
    struct Code {
        std::uint32_t value = 0;
        std::size_t byteCount = 1;

        /// Word spacing applies to it.
        bool isWordSpace() const { return value == ' ' && byteCount == 1; }
    };
    /// A glyph's outline, to be stretched horizontally.
    struct Shape {
        const CGPath* outline = nullptr; ///< borrowed from the font; null for a blank
        double widthScale = 1;
    };
    /// Where a glyph of vertical text stands.
    struct VerticalMetrics {
        double advance = -1;            ///< upward: usually negative
        CGPoint origin = CGPoint{0, 0}; ///< from the glyph's horizontal origin
    };
    /// A glyph that is a content stream.
    struct Procedure {
        PDFObject stream;
        const std::string* content =
            nullptr;         ///< borrowed from the font; null when the font has none for a code
        PDFObject resources; ///< null for those of the content that shows the text
        CGAffineTransform emFromGlyph = CGAffineTransformIdentity;
    };

    PDFFont() = default;
    PDFFont(const PDFFont&) = delete;
    PDFFont& operator=(const PDFFont&) = delete;
    virtual ~PDFFont() = default;

    /// The first code of a string that is not empty.
    virtual Code firstCode(std::string_view string) const;
    virtual double advance(std::uint32_t code, PDFRecording& recording) const = 0;
    virtual bool isVertical() const { return false; }
    /// Of vertical fonts only.
    virtual VerticalMetrics verticalMetrics(std::uint32_t) const { return {}; }

    virtual Shape shape(std::uint32_t code, PDFRecording& recording) const = 0;
    /// True for a Type 3 font: its glyphs are procedures.
    virtual bool hasProcedures() const { return false; }
    virtual Procedure procedure(std::uint32_t, PDFRecording&) const { return {}; }
};
