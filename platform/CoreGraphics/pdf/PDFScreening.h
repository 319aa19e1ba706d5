#pragma once

#include <string_view>

class QPDF;

// qpdf decodes the streams that it needs itself, cross-references and object streams, without a limit: some
// bytes of such a stream can stand for gigabytes. These checks come before qpdf uses them.

/// Whether a file can be opened: false for cross-reference streams that are much larger than the file or
/// whose size cannot be told, and for predictors with huge rows.
bool hasReasonableTables(std::string_view bytes);

/// Whether the object streams of an open file are together of a size in proportion to the file.
bool hasReasonableObjectStreams(QPDF& pdf, std::size_t fileSize);
