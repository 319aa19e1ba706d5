#pragma once

#include "support/Canvas.h"

#include <CoreGraphics/CGPDFPage.h>

#include <string>
#include <string_view>
#include <vector>

/// An indirect object of a PDF file: "<< /Type /Font … >>", or a stream that `pdfStream` makes.
using PDFObjectText = std::string;

/// The number of the first object in `objects` of the functions below: content refers to it as "10 0 R", to
/// the next as "11 0 R" and so on.
inline constexpr int kFirstPDFObject = 10;

/// A stream with its dictionary, whose further entries are `entries`: "/Type /XObject /Subtype /Form".
PDFObjectText pdfStream(std::string_view entries, std::string_view data);

/// The bytes of a file of one page with a correct cross-reference table. `resources` are the entries of the
/// page's resource dictionary, `pageEntries` further entries of the page: "/MediaBox [0 0 16 16] /Rotate 90".
std::string pdfBytes(std::string_view content, std::string_view resources = "",
    std::string_view pageEntries = "/MediaBox [0 0 16 16]", const std::vector<PDFObjectText>& objects = {});

/// A file of any objects, numbered from 1; the first one is the catalog. An empty text leaves its number out.
std::string pdfBytesOfObjects(
    const std::vector<PDFObjectText>& objects, std::string_view trailerEntries = "");

/// Opens bytes, which are copied. Null when they are no PDF file.
RetainPtr<CGPDFDocument> openPDF(std::string_view bytes);
/// Opens `pdfBytes` of the same arguments.
RetainPtr<CGPDFDocument> makePDF(std::string_view content, std::string_view resources = "",
    std::string_view pageEntries = "/MediaBox [0 0 16 16]", const std::vector<PDFObjectText>& objects = {});

/// Draws a page on a transparent canvas of `width` × `height` points with `scale` pixels each, the page's
/// origin at the bottom left.
Canvas drawPage(
    const RetainPtr<CGPDFDocument>& document, std::size_t number, int width, int height, double scale = 1);
/// Draws content on a canvas of 16 × 16 points.
Canvas drawContent(std::string_view content, std::string_view resources = "",
    const std::vector<PDFObjectText>& objects = {});
