#include "BitmapPixels.h"

#include <Foundation/NSDictionary.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <utility>

namespace {

RetainPtr<NSData> dataOfHex(std::string_view hex)
{
    Bytes bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2)
        bytes.push_back(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    return NSData::dataWithBytes(bytes.data(), bytes.size());
}

/// Varying bytes that are valid premultiplied RGBA: no component exceeds its alpha.
Bytes premultipliedPixels(std::size_t count)
{
    Bytes bytes;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t alpha = (i * 37 + 11) % 256;
        for (std::size_t c = 1; c <= 3; ++c)
            bytes.push_back(alpha ? i * 17 * c % (alpha + 1) : 0);
        bytes.push_back(alpha);
    }
    return bytes;
}

/// Suppresses the decoder's messages about corrupt files for its lifetime.
class Silence {
public:
    Silence() { testing::internal::CaptureStderr(); }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    ~Silence() { testing::internal::GetCapturedStderr(); }
};

// Files that another encoder wrote, signature included.

constexpr std::string_view kPalettePNG // red, green at alpha 128, (10, 20, 30)
    = "89504e470d0a1a0a0000000d49484452000000030000000108030000002c3ee48600000009504c5445ff000000ff000a141ed9"
      "7e4de70000000274524e53ff80080fb36a0000000c4944415478da63606064020000080004081d630a0000000049454e44ae"
      "426082";
constexpr std::string_view kBlackAndWhitePNG // 101 / 010
    = "89504e470d0a1a0a0000000d4948445200000003000000020100000000b50f5bb70000000c4944415478da6358c0e000000224"
      "00e14d16e85e0000000049454e44ae426082";
constexpr std::string_view kGray16PNG // 0x8080, 0xffff
    = "89504e470d0a1a0a0000000d494844520000000200000001100000000081d9fc150000000d4944415478da636868f8ff1f0006"
      "8202ff6ce043230000000049454e44ae426082";
constexpr std::string_view kGrayAlphaPNG // 200 at alpha 255, 100 at alpha 51
    = "89504e470d0a1a0a0000000d49484452000000020000000108040000005e2bb7010000000d4944415478da6338f13fc5180007"
      "1d025f4a928ec40000000049454e44ae426082";
constexpr std::string_view kRGBA16PNG // 0xffff, 0x8080, 0 at alpha 0x8080
    = "89504e470d0a1a0a0000000d49484452000000010000000110060000004f8518ca000000114944415478da63f8ffbfa18181a1"
      "a1010015fa03ff7c53f5890000000049454e44ae426082";
constexpr std::string_view kRGBPNG // 1 to 12
    = "89504e470d0a1a0a0000000d4948445200000002000000020802000000fdd49a73000000164944415478da6360646266616563"
      "60"
      "e7e0e4e2e60100018f004f06a8e58a0000000049454e44ae426082";
constexpr std::string_view kBombPNG // 30,000 x 30,000 pixels, all missing
    = "89504e470d0a1a0a0000000d49484452000075300000753008060000006627f8ba000000084944415478da0300000000016fdd"
      "c9910000000049454e44ae426082";

} // namespace

TEST(NSBitmapImageRepPNG, WritesPNGOfTheSizeAndTypeOfThePicture)
{
    const auto header = [](const RetainPtr<NSBitmapImageRep>& rep) {
        const auto data = png(*rep);
        const auto* bytes = static_cast<const std::uint8_t*>(data->bytes());
        return Bytes(bytes + 16, bytes + 26); // width, height, bits, colour type
    };
    const auto wide = header(rep(3, 1, 4, kCGImageAlphaPremultipliedLast, premultipliedPixels(3)));
    EXPECT_EQ(wide, (Bytes{0, 0, 0, 3, 0, 0, 0, 1, 8, 6})) << "RGBA";
    EXPECT_EQ(header(rep(1, 1, 4, kCGImageAlphaNoneSkipFirst, Bytes(4)))[9], 2) << "RGB";
    EXPECT_EQ(header(rep(1, 1, 3, kCGImageAlphaNone, Bytes(3)))[9], 2) << "RGB";
    EXPECT_EQ(header(rep(1, 1, 1, kCGImageAlphaOnly, Bytes(1), nullptr))[9], 6) << "RGBA";
    EXPECT_EQ(header(rep(1, 1, 1, kCGImageAlphaNone, Bytes(1), NSColorSpace::genericGrayColorSpace()))[9], 0)
        << "gray";
}

TEST(NSBitmapImageRepPNG, WritesTheSameBytesForTheSamePicture)
{
    const Bytes bytes = premultipliedPixels(37 * 11);
    const auto first = png(*rep(37, 11, 4, kCGImageAlphaPremultipliedLast, bytes));
    Bytes padded;
    for (auto row = bytes.begin(); row != bytes.end(); row += 37 * 4) {
        padded.insert(padded.end(), row, row + 37 * 4);
        padded.resize(padded.size() + 12, 99);
    }
    const auto second = png(*rep(37, 11, 4, kCGImageAlphaPremultipliedLast, padded));
    EXPECT_TRUE(first->isEqual(second));
    // There is a chunk with the resolution, but none with the time or a program's name.
    const std::string file(static_cast<const char*>(first->bytes()), first->length());
    EXPECT_EQ(
        file.substr(33, 21), std::string("\0\0\0\x09pHYs\0\0\x0b\x13\0\0\x0b\x13\x01\0\x9a\x9c\x18", 21));
    EXPECT_EQ(file.substr(58, 4), "IDAT");
    EXPECT_EQ(file.substr(file.size() - 8, 4), "IEND");
}

TEST(NSBitmapImageRepPNG, PremultipliedPixelsSurvivePNGAtAnySize)
{
    for (const auto& [width, height] :
        {std::pair{1, 1}, {1, 7}, {7, 1}, {3, 5}, {61, 25}, {129, 65}, {257, 3}}) {
        const Bytes bytes = premultipliedPixels(width * height);
        const auto back = thereAndBack(*rep(width, height, 4, kCGImageAlphaPremultipliedLast, bytes));
        ASSERT_NE(back, nullptr);
        EXPECT_EQ(back->pixelsWide(), width);
        EXPECT_EQ(back->pixelsHigh(), height);
        EXPECT_EQ(CGImageGetAlphaInfo(back->CGImage().get()), kCGImageAlphaPremultipliedLast);
        EXPECT_TRUE(pixels(back) == bytes) << width << " x " << height;
    }
}

TEST(NSBitmapImageRepPNG, EveryPremultipliedValueSurvivesPNG)
{
    Bytes bytes;
    for (int alpha = 0; alpha <= 255; ++alpha)
        for (int value = 0; value <= 255; ++value)
            bytes.insert(bytes.end(),
                {static_cast<std::uint8_t>(std::min(value, alpha)), 0, static_cast<std::uint8_t>(alpha / 2),
                    static_cast<std::uint8_t>(alpha)});
    const auto back = thereAndBack(*rep(256, 256, 4, kCGImageAlphaPremultipliedLast, bytes));
    EXPECT_TRUE(pixels(back) == bytes);
    EXPECT_TRUE(pixels(thereAndBack(*rep(256, 256, 4, kCGImageAlphaPremultipliedFirst, bytes)))
        == pixels(thereAndBack(*thereAndBack(*rep(256, 256, 4, kCGImageAlphaPremultipliedFirst, bytes)))));
}

TEST(NSBitmapImageRepPNG, OpaquePixelsSurvivePNGInEveryLayout)
{
    const Bytes opaque = {1, 2, 3, 255, 250, 100, 0, 255};
    EXPECT_EQ(pixels(thereAndBack(*rep(2, 1, 4, kCGImageAlphaPremultipliedLast, opaque))), opaque);
    EXPECT_EQ(pixels(thereAndBack(*rep(2, 1, 4, kCGImageAlphaLast, opaque))), opaque);
    EXPECT_EQ(
        pixels(thereAndBack(*rep(2, 1, 4, kCGImageAlphaNoneSkipLast, {1, 2, 3, 9, 250, 100, 0, 9}))), opaque);
    EXPECT_EQ(pixels(thereAndBack(*rep(2, 1, 4, kCGImageAlphaNoneSkipFirst, {9, 1, 2, 3, 9, 250, 100, 0}))),
        opaque);
    EXPECT_EQ(pixels(thereAndBack(*rep(2, 1, 3, kCGImageAlphaNone, {1, 2, 3, 250, 100, 0}))), opaque);
    EXPECT_EQ(
        pixels(thereAndBack(*rep(2, 1, 4, kCGImageAlphaFirst, {255, 1, 2, 3, 255, 250, 100, 0}))), opaque);
    EXPECT_EQ(pixels(thereAndBack(
                  *rep(2, 1, 4, kCGImageAlphaPremultipliedFirst, {255, 1, 2, 3, 255, 250, 100, 0}))),
        opaque);
}

TEST(NSBitmapImageRepPNG, StraightPixelsArePremultipliedOnReading)
{
    // 200 * 128 / 255 = 100.4; 3 * 128 / 255 = 1.5; 255 * 51 / 255 = 51.
    const auto back = thereAndBack(*rep(2, 1, 4, kCGImageAlphaLast, {200, 3, 0, 128, 255, 255, 0, 51}));
    EXPECT_EQ(pixels(back), (Bytes{100, 2, 0, 128, 51, 51, 0, 51}));
}

TEST(NSBitmapImageRepPNG, GraySurvivesPNGAsGray)
{
    Bytes bytes(256);
    for (int i = 0; i < 256; ++i)
        bytes[i] = i;
    const auto back =
        thereAndBack(*rep(256, 1, 1, kCGImageAlphaNone, bytes, NSColorSpace::deviceGrayColorSpace()));
    EXPECT_EQ(pixels(back), bytes);
    EXPECT_FALSE(back->hasAlpha());
    EXPECT_EQ(
        CGColorSpaceGetModel(CGImageGetColorSpace(back->CGImage().get())), kCGColorSpaceModelMonochrome);
}

TEST(NSBitmapImageRepPNG, MasksAreWrittenAsBlackWithTheirCoverageAsAlpha)
{
    const auto alpha = rep(3, 1, 1, kCGImageAlphaOnly, {0, 100, 255}, nullptr);
    EXPECT_EQ(pixels(thereAndBack(*alpha)), (Bytes{0, 0, 0, 0, 0, 0, 0, 100, 0, 0, 0, 255}));
    const auto mask = adopt(CGImageMaskCreate(3, 1, 8, 8, 3, provider({0, 100, 255}).get(), nullptr, false));
    EXPECT_EQ(pixels(thereAndBack(*NSBitmapImageRep::initWithCGImage(mask))),
        (Bytes{0, 0, 0, 255, 0, 0, 0, 155, 0, 0, 0, 0}));
}

TEST(NSBitmapImageRepPNG, AcceptsADictionaryOfProperties)
{
    const auto picture = rep(1, 1, 3, kCGImageAlphaNone, {1, 2, 3});
    const auto properties = make<NSDictionary>();
    EXPECT_TRUE(
        picture->representationUsingType(NSBitmapImageFileTypePNG, properties)->isEqual(png(*picture).get()));
}

TEST(NSBitmapImageRepPNG, ReturnsNullForOtherFormats)
{
    const auto picture = rep(1, 1, 3, kCGImageAlphaNone, {1, 2, 3});
    EXPECT_EQ(picture->representationUsingType(NSBitmapImageFileType(3), nullptr), nullptr);
}

TEST(NSBitmapImageRepPNG, ReadsPNGOfOtherEncoders)
{
    const auto read = [](std::string_view hex) { return pixels(repOfPNG(dataOfHex(hex).get())); };
    EXPECT_EQ(read(kPalettePNG), (Bytes{255, 0, 0, 255, 0, 128, 0, 128, 10, 20, 30, 255}));
    EXPECT_EQ(read(kBlackAndWhitePNG), (Bytes{255, 0, 255, 0, 255, 0}));
    EXPECT_EQ(read(kGray16PNG), (Bytes{128, 255}));
    EXPECT_EQ(read(kGrayAlphaPNG), (Bytes{200, 200, 200, 255, 20, 20, 20, 51}));
    EXPECT_EQ(read(kRGBA16PNG), (Bytes{128, 64, 0, 128}));
    EXPECT_EQ(read(kRGBPNG), (Bytes{1, 2, 3, 255, 4, 5, 6, 255, 7, 8, 9, 255, 10, 11, 12, 255}));
    EXPECT_FALSE(repOfPNG(dataOfHex(kRGBPNG).get())->hasAlpha());
}

TEST(NSBitmapImageRepPNG, RejectsDataThatIsNotPNG)
{
    const Silence silence;
    EXPECT_EQ(repOfPNG(nullptr), nullptr);
    EXPECT_EQ(repOfPNG(NSData::data().get()), nullptr);
    EXPECT_EQ(repOfPNG(dataOfHex("4749463839610100010000").get()), nullptr) << "the start of a GIF";
    EXPECT_EQ(repOfPNG(dataOfHex("89504e470d0a1a0a").get()), nullptr) << "a signature alone";
}

TEST(NSBitmapImageRepPNG, RejectsDecompressionBombs)
{
    const Silence silence;
    EXPECT_EQ(repOfPNG(dataOfHex(kBombPNG).get()), nullptr);
}

TEST(NSBitmapImageRepPNG, RejectsTruncatedPNG)
{
    const Silence silence;
    const auto data = png(*rep(16, 16, 4, kCGImageAlphaPremultipliedLast, premultipliedPixels(256)));
    const std::size_t ending = 12; // the last chunk is empty
    for (std::size_t length = 0; length < data->length() - ending; ++length)
        ASSERT_EQ(repOfPNG(NSData::dataWithBytes(data->bytes(), length).get()), nullptr) << length;
}

TEST(NSBitmapImageRepPNG, ReadsCorruptPNGAsNullOrAnImage)
{
    const Silence silence;
    const auto data = png(*rep(16, 16, 4, kCGImageAlphaPremultipliedLast, premultipliedPixels(256)));
    const auto* bytes = static_cast<const std::uint8_t*>(data->bytes());
    for (std::size_t position = 0; position < data->length(); ++position) {
        Bytes damaged(bytes, bytes + data->length());
        damaged[position] ^= 0x55;
        const auto picture = repOfPNG(NSData::dataWithBytes(damaged.data(), damaged.size()).get());
        if (picture) {
            ASSERT_EQ(pixels(picture).size(), 16 * 16 * 4U);
        }
    }
}

// The sanitizers reserve more memory than any usable limit.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace {

/// Limits the process to that much more memory than it has now; a negative size removes the limit.
void limitMemoryTo(long moreBytes)
{
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    rlimit limit{};
    getrlimit(RLIMIT_AS, &limit);
    limit.rlim_cur =
        moreBytes < 0 ? limit.rlim_max : static_cast<rlim_t>(pages * sysconf(_SC_PAGESIZE) + moreBytes);
    setrlimit(RLIMIT_AS, &limit);
}

/// Encodes and decodes an incompressible image of 4 MB with increasing memory limits.
[[noreturn]] void writeAndReadWithLittleMemory()
{
    constexpr int kSide = 1024;
    Bytes noise(kSide * kSide * 4);
    std::minstd_rand random(1);
    for (auto& byte : noise)
        byte = static_cast<std::uint8_t>(random() >> 8);
    const auto picture = rep(kSide, kSide, 4, kCGImageAlphaLast, noise);
    const auto file = png(*picture);

    int failedWrites = 0, failedReads = 0, writes = 0, reads = 0;
    for (long megabytes = 0; megabytes <= 24; megabytes += 2) {
        limitMemoryTo(megabytes << 20);
        const auto written = png(*picture);
        limitMemoryTo(megabytes << 20);
        const auto read = repOfPNG(file.get());
        limitMemoryTo(-1);
        EXPECT_TRUE(!written || written->isEqual(file.get())) << megabytes;
        EXPECT_TRUE(!read || read->pixelsWide() == kSide) << megabytes;
        ++(written ? writes : failedWrites);
        ++(read ? reads : failedReads);
    }
    EXPECT_GE(std::min({failedWrites, failedReads, writes, reads}), 2);
    std::_Exit(testing::Test::HasFailure() ? 1 : 0);
}

} // namespace

TEST(NSBitmapImageRepPNGDeathTest, IsNullWhenMemoryRunsOut)
{
    EXPECT_EXIT(writeAndReadWithLittleMemory(), testing::ExitedWithCode(0), "");
}

#endif
