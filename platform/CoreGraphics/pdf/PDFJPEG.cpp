#include "CoreGraphics/pdf/PDFJPEG.h"

#include <csetjmp>
#include <cstdint>
#include <cstdio> // jpeglib.h needs it

#include <jpeglib.h>

namespace {

/// libjpeg's state, and where it returns to on an error.
struct Decoder {
    jpeg_decompress_struct info{};
    jpeg_error_mgr errors{};
    jpeg_progress_mgr progress{};
    std::jmp_buf onError{};
};

void returnOnError(j_common_ptr info)
{
    std::longjmp(static_cast<Decoder*>(info->client_data)->onError, 1);
}

void ignoreMessage(j_common_ptr, int) { }

/// A progressive image of many empty scans is small and takes long.
void limitScans(j_common_ptr info)
{
    constexpr int kMostScans = 64;
    if (static_cast<Decoder*>(info->client_data)->info.input_scan_number > kMostScans)
        returnOnError(info);
}

void chooseColors(jpeg_decompress_struct& info, PDFJPEGTransform transform)
{
    const bool isMarked = info.saw_Adobe_marker || info.saw_JFIF_marker;
    if (!isMarked && transform != PDFJPEGTransform::Default) {
        const bool isLuminance = transform == PDFJPEGTransform::Luminance;
        if (info.num_components == 3)
            info.jpeg_color_space = isLuminance ? JCS_YCbCr : JCS_RGB;
        else if (info.num_components == 4)
            info.jpeg_color_space = isLuminance ? JCS_YCCK : JCS_CMYK;
    }
    info.out_color_space = info.num_components == 1 ? JCS_GRAYSCALE
        : info.num_components == 3                  ? JCS_RGB
                                                    : JCS_CMYK;
}

/// Fills `image`, whose samples are complete as far as libjpeg came. Errors jump out of this function and
/// those that it calls, so nothing in it has a destructor.
void decode(Decoder& decoder, std::string_view file, PDFJPEGTransform transform, std::size_t mostBytes,
    PDFJPEGImage& image)
{
    jpeg_decompress_struct& info = decoder.info;
    info.client_data = &decoder;
    info.err = jpeg_std_error(&decoder.errors);
    decoder.errors.error_exit = returnOnError;
    decoder.errors.emit_message = ignoreMessage;
    if (setjmp(decoder.onError) != 0) // NOLINT(modernize-avoid-setjmp)
        return;
    jpeg_create_decompress(&info);
    decoder.progress.progress_monitor = limitScans;
    info.progress = &decoder.progress;
    jpeg_mem_src(&info, reinterpret_cast<const unsigned char*>(file.data()), file.size());
    jpeg_read_header(&info, TRUE);
    const bool hasKnownColors =
        info.num_components == 1 || info.num_components == 3 || info.num_components == 4;
    const auto bytesPerRow = std::size_t(info.image_width) * std::size_t(info.num_components);
    if (!hasKnownColors || bytesPerRow > mostBytes / info.image_height)
        return;
    chooseColors(info, transform);
    jpeg_start_decompress(&info);
    image.width = info.output_width;
    image.height = info.output_height;
    image.components = std::size_t(info.output_components);
    image.samples.resize(bytesPerRow * image.height);
    while (info.output_scanline < info.output_height) {
        JSAMPROW row =
            reinterpret_cast<unsigned char*>(image.samples.data()) + bytesPerRow * info.output_scanline;
        jpeg_read_scanlines(&info, &row, 1);
    }
}

} // namespace

PDFJPEGImage decodeJPEG(std::string_view file, PDFJPEGTransform transform, std::size_t mostBytes)
{
    PDFJPEGImage image;
    Decoder decoder;
    decode(decoder, file, transform, mostBytes, image);
    jpeg_destroy_decompress(&decoder.info);
    return image;
}
