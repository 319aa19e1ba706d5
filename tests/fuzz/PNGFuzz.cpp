#include "PNGFuzz.h"

#include "FuzzInput.h"
#include "Require.h"

#include <AppKit/NSBitmapImageRep.h>
#include <Foundation/NSData.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <zlib.h>

namespace {

constexpr std::string_view kSignature = "\x89PNG\r\n\x1A\n";
constexpr std::size_t kAroundChunk = 12; ///< bytes of a chunk's length, type and checksum

std::string bigEndian(std::uint32_t value)
{
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift);
    return bytes;
}

std::uint32_t numberAt(std::string_view file, std::size_t at)
{
    std::uint32_t value = 0;
    for (const char byte : file.substr(at, 4))
        value = value << 8 | static_cast<unsigned char>(byte);
    return value;
}

/// The checksum of a chunk's type and content.
std::string checksum(std::string_view chunk)
{
    return bigEndian(static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(chunk.data()), static_cast<uInt>(chunk.size()))));
}

std::string chunk(const std::string& type, const std::string& content)
{
    return bigEndian(static_cast<std::uint32_t>(content.size())) + type + content + checksum(type + content);
}

/// The file with the right checksum in each whole chunk, which mutations alone would hardly find.
std::string withChecksums(std::string file)
{
    for (std::size_t at = kSignature.size(); at + kAroundChunk <= file.size();) {
        const std::size_t length = numberAt(file, at);
        if (length > file.size() - at - kAroundChunk)
            break;
        const std::string sum = checksum(std::string_view(file).substr(at + 4, 4 + length));
        file.replace(at + 8 + length, sum.size(), sum);
        at += kAroundChunk + length;
    }
    return file;
}

std::string deflated(const std::string& bytes)
{
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::string result(size, '\0');
    const auto* source = reinterpret_cast<const Bytef*>(bytes.data());
    require(compress2(reinterpret_cast<Bytef*>(result.data()), &size, source,
                static_cast<uLong>(bytes.size()), Z_BEST_SPEED)
        == Z_OK);
    result.resize(size);
    return result;
}

std::string takeBytes(FuzzInput& input, std::size_t count)
{
    std::string bytes(count, '\0');
    for (char& byte : bytes)
        byte = input.take<char>();
    return bytes;
}

/// A file of a few pixels and what is known of it.
struct Composed {
    std::string file;
    std::uint32_t width, height;
    /// The samples as they stand in the file, where those of the picture are the same.
    std::optional<std::string> pixels;
};

/// A file with any header of a small size, valid rows but for their filters, and sometimes too few of them.
Composed takeComposed(FuzzInput& input)
{
    Composed composed{{}, 1U + input.take<std::uint8_t>() % 20, 1U + input.take<std::uint8_t>() % 20, {}};
    constexpr int kDepths[] = {8, 8, 16, 1, 2, 4, 8, 3};
    constexpr int kTypes[] = {0, 2, 3, 4, 6, 2, 6, 5};
    const int depth = kDepths[input.takeIndex(8)];
    const int type = kTypes[input.takeIndex(8)];
    const bool isInterlaced = input.takeIndex(4) == 0;
    const bool hasTransparency = input.takeIndex(3) == 0;
    const bool isPlain = input.takeIndex(2) == 0;
    const bool isComplete = input.takeIndex(8) != 0;

    std::string header = bigEndian(composed.width) + bigEndian(composed.height);
    header += {static_cast<char>(depth), static_cast<char>(type), 0, 0, isInterlaced ? '\1' : '\0'};
    composed.file = std::string(kSignature) + chunk("IHDR", header);
    if (type == 3)
        composed.file += chunk("PLTE", takeBytes(input, 3 * std::size_t(1 + input.takeIndex(16))));
    if (hasTransparency)
        composed.file += chunk("tRNS", takeBytes(input, type == 2 ? 6 : type == 0 ? 2 : 4));

    const std::size_t samples = type == 2 ? 3 : type == 4 ? 2 : type == 6 ? 4 : 1;
    const std::size_t bytesPerRow = (composed.width * samples * static_cast<std::size_t>(depth) + 7) / 8;
    std::string rows, pixels;
    for (std::uint32_t row = 0; row < composed.height; ++row) {
        rows += isPlain ? '\0' : static_cast<char>(input.takeIndex(6));
        const std::string bytes = takeBytes(input, bytesPerRow);
        rows += bytes;
        pixels += bytes;
    }
    // An interlaced picture of this size has up to seven more rows for each of its own.
    if (isInterlaced)
        rows += std::string(rows.size(), '\0');
    if (!isComplete)
        rows.resize(rows.size() / 2);
    else if (depth == 8 && (type == 0 || type == 2) && isPlain && !isInterlaced && !hasTransparency)
        composed.pixels = pixels;
    composed.file += chunk("IDAT", deflated(rows)) + chunk("IEND", "");
    return composed;
}

RetainPtr<NSBitmapImageRep> readPicture(const std::string& file)
{
    return NSBitmapImageRep::initWithData(NSData::dataWithBytes(file.data(), file.size()).get());
}

/// The rows of a picture, without what pads them or stands in for alpha.
std::string samplesOf(NSBitmapImageRep& picture)
{
    const bool isGray = picture.bytesPerRow() == picture.pixelsWide();
    const auto width = static_cast<std::size_t>(picture.pixelsWide());
    const std::size_t used = isGray ? 1 : picture.hasAlpha() ? 4 : 3;
    std::string samples;
    for (NSInteger y = 0; y < picture.pixelsHigh(); ++y) {
        const auto* row = reinterpret_cast<const char*>(picture.bitmapData() + y * picture.bytesPerRow());
        for (std::size_t x = 0; x < width; ++x)
            samples.append(row + x * (isGray ? 1 : 4), used);
    }
    return samples;
}

/// Checks the picture of a file, if it is one; returns it.
RetainPtr<NSBitmapImageRep> checkFile(const std::string& file)
{
    auto picture = readPicture(file);
    const auto second = readPicture(file);
    require(!picture == !second);
    if (!picture)
        return nullptr;
    require(std::string_view(file).starts_with(kSignature));
    require(std::uint32_t(picture->pixelsWide()) == numberAt(file, 16)
        && std::uint32_t(picture->pixelsHigh()) == numberAt(file, 20));
    // Larger ones take their time, but nothing else.
    constexpr NSInteger kMostPixels = 1 << 16;
    if (picture->pixelsWide() * picture->pixelsHigh() > kMostPixels)
        return picture;
    const std::string samples = samplesOf(*picture);
    require(samplesOf(*second) == samples);
    if (picture->hasAlpha()) {
        for (std::size_t i = 0; i < samples.size(); ++i)
            require(static_cast<unsigned char>(samples[i]) <= static_cast<unsigned char>(samples[i | 3]));
    }
    const auto written = picture->representationUsingType(NSBitmapImageFileTypePNG, nullptr);
    const auto writtenTwice = second->representationUsingType(NSBitmapImageFileTypePNG, nullptr);
    require(written && written->isEqual(writtenTwice));
    const auto again = NSBitmapImageRep::initWithData(written);
    require(again && again->pixelsWide() == picture->pixelsWide() && samplesOf(*again) == samples);
    return picture;
}

} // namespace

void fuzzPNG(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(data, data + size);
    if (bytes.starts_with(kSignature.substr(0, 4))) {
        checkFile(withChecksums(bytes));
        return;
    }
    FuzzInput input(data, size);
    const Composed composed = takeComposed(input);
    const auto picture = checkFile(composed.file);
    if (composed.pixels)
        require(picture && samplesOf(*picture) == *composed.pixels);
}

std::vector<std::string> pngSeeds()
{
    std::vector<std::string> seeds;
    std::mt19937 random(11);
    for (int i = 0; i < 12; ++i) {
        std::string bytes(200, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        FuzzInput input(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        seeds.push_back(takeComposed(input).file);
        seeds.push_back(bytes);
    }
    return seeds;
}
