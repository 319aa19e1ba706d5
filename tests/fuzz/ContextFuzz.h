#pragma once

#include "FuzzTarget.h"

/// Draws what arbitrary bytes say into a small bitmap: paths, strokes with dashes, gradients, images,
/// shadows, text and transparency layers in all blend modes, under any transforms, clips and numbers. Nothing
/// may crash, hang, paint outside of the clip or of the rows, or draw differently the second time; what does
/// ends the process.
void fuzzContext(const std::uint8_t* data, std::size_t size);

inline constexpr FuzzTarget kContextFuzz{
    fuzzContext, [] { return std::vector<std::string>(); }}; ///< any bytes are one
