#pragma once

#include "FuzzTarget.h"

/// Opens arbitrary bytes as a PDF file, reads the boxes of its first pages and draws those, in colour and as
/// a mask. Nothing may crash, hang or draw differently the second time; what does ends the process.
void fuzzPDF(const std::uint8_t* data, std::size_t size);
/// Icons and the hostile files that are drawn fast.
std::vector<std::string> pdfSeeds();

inline constexpr FuzzTarget kPDFFuzz{fuzzPDF, pdfSeeds};
