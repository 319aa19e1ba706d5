#include "AppKit/PNGCodec.h"

#include <algorithm>
#include <csetjmp>
#include <cstring>
#include <new>
#include <png.h>
#include <utility>

// libpng reports an error by a jump to where its caller has called setjmp. No object with a destructor lives
// in the functions that are jumped over, and no exception passes through libpng.

namespace {

constexpr png_uint_32 kDotsPerMeter = 2835; // 72 dpi

[[noreturn]] void jumpBack(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) { }

int colorType(PNGPicture::Format format)
{
    switch (format) {
    case PNGPicture::Format::Gray:
        return PNG_COLOR_TYPE_GRAY;
    case PNGPicture::Format::RGB:
        return PNG_COLOR_TYPE_RGB;
    case PNGPicture::Format::RGBA:
        break;
    }
    return PNG_COLOR_TYPE_RGBA;
}

/// libpng's structures for writing one file.
class Encoder {
public:
    Encoder()
        : _png(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, jumpBack, ignoreWarning))
        , _info(_png ? png_create_info_struct(_png) : nullptr)
    {
    }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    ~Encoder() { png_destroy_write_struct(&_png, &_info); }

    /// Appends the file to `file`. False when that fails.
    bool write(const PNGPicture& picture, std::vector<std::byte>& file)
    {
        if (!_info || setjmp(png_jmpbuf(_png)) != 0)
            return false;
        png_set_write_fn(_png, &file, append, nullptr);
        png_set_IHDR(_png, _info, png_uint_32(picture.width), png_uint_32(picture.height), 8,
            colorType(picture.format), PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
            PNG_FILTER_TYPE_DEFAULT);
        // Pictures of views are as small with this one filter as with the best one of five for each row, in
        // 60 % of the time.
        png_set_filter(_png, PNG_FILTER_TYPE_BASE, PNG_FILTER_UP);
        png_set_pHYs(_png, _info, kDotsPerMeter, kDotsPerMeter, PNG_RESOLUTION_METER);
        png_write_info(_png, _info);
        const std::size_t bytesPerRow = picture.width * PNGPicture::bytesPerPixel(picture.format);
        for (std::size_t row = 0; row < picture.height; ++row)
            png_write_row(_png, picture.bytes.data() + row * bytesPerRow);
        png_write_end(_png, nullptr);
        return true;
    }

private:
    static void append(png_structp png, png_bytep bytes, std::size_t count)
    {
        auto& file = *static_cast<std::vector<std::byte>*>(png_get_io_ptr(png));
        const auto* const first = reinterpret_cast<const std::byte*>(bytes);
        bool isAppended = true;
        try {
            file.insert(file.end(), first, first + count);
        } catch (const std::bad_alloc&) {
            isAppended = false;
        }
        if (!isAppended)
            png_error(png, "out of memory");
    }

    png_structp _png;
    png_infop _info;
};

/// libpng's structures for reading one file.
class Decoder {
public:
    explicit Decoder(std::span<const std::byte> file)
        : _unread(file)
        , _png(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, jumpBack, ignoreWarning))
        , _info(_png ? png_create_info_struct(_png) : nullptr)
    {
        if (!_png)
            throw std::bad_alloc();
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder() { png_destroy_read_struct(&_png, &_info, nullptr); }

    /// Reads what precedes the pixels into a picture without bytes. False when the file is damaged.
    bool readHeader(PNGPicture& picture)
    {
        if (!_info || setjmp(png_jmpbuf(_png)) != 0)
            return false;
        png_set_read_fn(_png, &_unread, take);
        png_read_info(_png, _info);
        png_set_expand(_png);
        png_set_scale_16(_png);
        const bool hasAlpha = (png_get_color_type(_png, _info) & PNG_COLOR_MASK_ALPHA) != 0
            || png_get_valid(_png, _info, PNG_INFO_tRNS) != 0;
        const bool isGray = png_get_color_type(_png, _info) == PNG_COLOR_TYPE_GRAY && !hasAlpha;
        if (!isGray)
            png_set_gray_to_rgb(_png);
        _passes = png_set_interlace_handling(_png);
        png_read_update_info(_png, _info);
        picture.format = hasAlpha ? PNGPicture::Format::RGBA
            : isGray              ? PNGPicture::Format::Gray
                                  : PNGPicture::Format::RGB;
        picture.width = png_get_image_width(_png, _info);
        picture.height = png_get_image_height(_png, _info);
        return png_get_rowbytes(_png, _info) == picture.width * PNGPicture::bytesPerPixel(picture.format);
    }

    /// Reads the pixels into the picture's bytes, which have room for them. False when the file is damaged.
    bool readPixels(PNGPicture& picture)
    {
        if (setjmp(png_jmpbuf(_png)) != 0)
            return false;
        const std::size_t bytesPerRow = picture.width * PNGPicture::bytesPerPixel(picture.format);
        for (int pass = 0; pass < _passes; ++pass) {
            for (std::size_t row = 0; row < picture.height; ++row)
                png_read_row(_png, picture.bytes.data() + row * bytesPerRow, nullptr);
        }
        png_read_end(_png, nullptr);
        return true;
    }

private:
    static void take(png_structp png, png_bytep bytes, std::size_t count)
    {
        auto& unread = *static_cast<std::span<const std::byte>*>(png_get_io_ptr(png));
        if (count > unread.size())
            png_error(png, "the file ends too early");
        std::memcpy(bytes, unread.data(), count);
        unread = unread.subspan(count);
    }

    std::span<const std::byte> _unread;
    png_structp _png;
    png_infop _info;
    int _passes = 1;
};

} // namespace

std::vector<std::byte> encodePNG(const PNGPicture& picture)
{
    if (std::max(picture.width, picture.height) > PNG_UINT_31_MAX)
        return {};
    std::vector<std::byte> file;
    return Encoder().write(picture, file) ? std::move(file) : std::vector<std::byte>();
}

std::optional<PNGPicture> decodePNG(std::span<const std::byte> file)
{
    Decoder decoder(file);
    PNGPicture picture{};
    if (!decoder.readHeader(picture) || picture.width * picture.height > kMostPNGPixels)
        return std::nullopt;
    picture.bytes.resize(picture.width * picture.height * PNGPicture::bytesPerPixel(picture.format));
    if (!decoder.readPixels(picture))
        return std::nullopt;
    return picture;
}
