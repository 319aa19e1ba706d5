#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The samples of a JPEG image, 8 bits each, row by row without gaps: gray, RGB or CMYK as the file stores
/// it. (Programs that store CMYK inverted say so in the image's Decode array.)
struct PDFJPEGImage {
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t components = 0; ///< 1, 3 or 4; 0 when there is no image
    std::string samples;
};

/// What a file says about the colours of a JPEG image that does not say so itself.
enum class PDFJPEGTransform { Default, None, Luminance };

/// Decodes a JPEG file. A damaged one is decoded as far as possible. No image when it has no valid header,
/// more than `mostBytes` of samples, or so many scans that it would take very long.
PDFJPEGImage decodeJPEG(std::string_view file, PDFJPEGTransform transform, std::size_t mostBytes);
