#pragma once

#include "PostScriptTestFonts.h"
#include "support/PDFPages.h"

#include <string>
#include <string_view>
#include <vector>

/// Fonts of PDF files for tests: the font's dictionary is the first of the page's objects, and /F in its
/// resources.

inline constexpr std::string_view kFontF = "/Font << /F 10 0 R >>";

/// A font whose program is in the file. `entries` are the font's further entries, such as "/Subtype /Type1",
/// and `descriptorEntries` its descriptor's, such as "/Flags 4".
inline std::vector<PDFObjectText> embeddedFont(std::string_view entries, std::string_view fileKey,
    const std::string& program, std::string_view descriptorEntries = "")
{
    std::string font = "<< /Type /Font /BaseFont /ABCDEF+Squares /FontDescriptor 11 0 R ";
    font += entries;
    std::string descriptor = "<< /Type /FontDescriptor /FontName /ABCDEF+Squares /";
    descriptor += fileKey;
    descriptor += " 12 0 R ";
    descriptor += descriptorEntries;
    return {font + " >>", descriptor + " >>", pdfStream("", program)};
}

/// Letters of one em: A fills it, b is its bottom left quarter. The blank is half as wide; the glyph "weird",
/// code 200 in the font's own encoding, is the lower half of an em and as wide as the blank.
inline std::vector<RectangleGlyph> squareGlyphs()
{
    return {{"A", 1000, 0, 0, 1000, 1000, 'A'}, {"b", 1000, 0, 0, 500, 500, 'b'},
        {"space", 500, 0, 0, 0, 0, ' '}, {"weird", 500, 0, 0, 500, 500, 200}};
}

/// The same glyphs as a Type 1 font.
inline std::vector<PDFObjectText> squareFont(std::string_view entries = "")
{
    return embeddedFont(
        "/Subtype /Type1 " + std::string(entries), "FontFile", type1FontBytes(squareGlyphs()));
}

/// Text operators with the font /F at 2 points, on a page of 12 × 4 points.
inline Canvas drawText(std::string_view operators, const std::vector<PDFObjectText>& objects = squareFont(),
    std::string_view resources = kFontF)
{
    const std::string content = "BT /F 2 Tf " + std::string(operators) + " ET";
    return drawPage(makePDF(content, resources, "/MediaBox [0 0 12 4]", objects), 1, 12, 4);
}
