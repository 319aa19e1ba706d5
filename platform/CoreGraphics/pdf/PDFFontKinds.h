#pragma once

#include "CoreGraphics/pdf/PDFFont.h"

#include <string>

// The kinds of fonts, and what they share. For PDFFont::make.

/// Type 1 and TrueType: one byte for each glyph.
std::shared_ptr<const PDFFont> makeSimpleFont(const PDFObject& dictionary, PDFRecording& recording);
/// Type 0: two bytes for each glyph of a CID-keyed font.
std::shared_ptr<const PDFFont> makeCompositeFont(const PDFObject& dictionary, PDFRecording& recording);
/// Type 3: glyphs are content streams.
std::shared_ptr<const PDFFont> makeProcedureFont(const PDFObject& dictionary, PDFRecording& recording);

/// The font's name without the mark of a subset, "Helvetica" for "ABCDEF+Helvetica"; for messages.
std::string readableFontName(const PDFObject& dictionary);
/// The stream with the font program; null when the file does not contain it.
PDFObject fontProgram(const PDFObject& descriptor);

/// The bits of a font descriptor's Flags.
enum FontFlag : unsigned {
    kFontIsFixedPitch = 1 << 0,
    kFontIsSerif = 1 << 1,
    kFontIsSymbolic = 1 << 2,
    kFontIsNonsymbolic = 1 << 5,
    kFontIsItalic = 1 << 6,
    kFontIsForcedBold = 1 << 18,
};
