#pragma once

#include "CoreGraphics/pdf/PDFObject.h"

#include <cstddef>
#include <string>
#include <string_view>

/// Whether a filter, or one of an array of them, is RunLengthDecode.
bool hasRunLengths(const PDFObject& filters);

/// Decodes what the filter RunLengthDecode encodes: bytes that are copied, and bytes that are repeated. What
/// comes before damage counts. Throws PDFLimitExceeded for more than `most` bytes.
///
/// qpdf's own filter, from its version 12 on, collects all of the result before it passes any of it on, so
/// that a limit of what it passes on comes too late.
std::string decodedRunLengths(std::string_view bytes, std::size_t most);
