#include "support/Threads.h"

#include <KorvidAppKit/ZRQRCodeGenerator.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <qrcodegen.h>
#include <random>
#include <string>
#include <vector>

namespace {

struct Free {
    void operator()(std::uint8_t* bytes) const { std::free(bytes); }
};
using Bytes = std::unique_ptr<std::uint8_t[], Free>;

const ZRQRCodeGenerator& generator()
{
    return *ZRQRCodeGenerator::sharedQRCodeGenerator();
}

Bytes bits(const NSString& text, NSInteger* dim = nullptr)
{
    return Bytes(generator().copyQRBitsFromText(text, dim));
}

/// The corners of each element of a path that is made of closed unit squares; fails on anything else.
std::vector<CGPoint> originsOfUnitSquares(CGPathRef path)
{
    struct Walk {
        std::vector<CGPoint> origins;
        int element = 0; ///< of the current square
    } walk;
    CGPathApply(path, &walk, [](void* info, const CGPathElement* element) {
        auto& [origins, index] = *static_cast<Walk*>(info);
        constexpr CGPathElementType kTypes[] = {kCGPathElementMoveToPoint, kCGPathElementAddLineToPoint,
            kCGPathElementAddLineToPoint, kCGPathElementAddLineToPoint, kCGPathElementCloseSubpath};
        constexpr CGPoint kCorners[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
        ASSERT_EQ(element->type, kTypes[index]);
        if (index == 0)
            origins.push_back(element->points[0]);
        if (index < 4) {
            ASSERT_EQ(element->points[0].x, origins.back().x + kCorners[index].x);
            ASSERT_EQ(element->points[0].y, origins.back().y + kCorners[index].y);
        }
        index = (index + 1) % 5;
    });
    EXPECT_EQ(walk.element, 0) << "the last square is not complete";
    return walk.origins;
}

/// Whether the encoder, called as the generator calls it, has capacity for the string.
bool encoderTakes(const std::string& text)
{
    std::vector<std::uint8_t> scratch(qrcodegen_BUFFER_LEN_MAX), symbol(qrcodegen_BUFFER_LEN_MAX);
    // A fixed mask avoids the search for the best one, which does not affect the size.
    return qrcodegen_encodeText(
        text.c_str(), scratch.data(), symbol.data(), qrcodegen_Ecc_MEDIUM, 1, 40, qrcodegen_Mask_0, true);
}

/// A character whose densest mode is the given one: 0 digits, 1 alphanumeric, 2 anything.
char character(int mode, std::mt19937& random)
{
    constexpr char kAlphanumerics[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ $%*+-./:0123456789";
    if (mode == 0)
        return static_cast<char>('0' + random() % 10);
    if (mode == 1)
        return kAlphanumerics[random() % 45];
    return static_cast<char>(1 + random() % 127);
}

} // namespace

TEST(QRCodeGenerator, IsASharedInstance)
{
    EXPECT_NE(ZRQRCodeGenerator::sharedQRCodeGenerator(), nullptr);
    EXPECT_EQ(ZRQRCodeGenerator::sharedQRCodeGenerator(), ZRQRCodeGenerator::sharedQRCodeGenerator());
}

// In a separate process, in which there is no generator yet.
TEST(QRCodeGeneratorDeathTest, IsCreatedOnceForAllThreads)
{
    EXPECT_EXIT(std::exit(allThreadsGetTheSame(ZRQRCodeGenerator::sharedQRCodeGenerator) ? 0 : 1),
        ::testing::ExitedWithCode(0), "");
}

TEST(QRCodeGenerator, AShortStringHasASquareForEachDarkModule)
{
    NSInteger bitsDim = 0, bytesDim = 0, pathDim = 0;
    const auto symbol = bits("hello", &bitsDim);
    const Bytes bytes(generator().copyQRBytesFromText("hello", &bytesDim, true));
    const auto path = adopt(generator().copyQRPathFromText("hello", &pathDim));
    ASSERT_TRUE(symbol && bytes && path);
    EXPECT_EQ(bitsDim, 21);
    EXPECT_EQ(bytesDim, 21);
    EXPECT_EQ(pathDim, 21);

    // Row after row, each from the left, exactly where the other forms have a dark module.
    std::vector<CGPoint> dark;
    for (int y = 0; y < 21; ++y) {
        for (int x = 0; x < 21; ++x) {
            const bool isDark = qrcodegen_getModule(symbol.get(), x, y);
            EXPECT_EQ(bytes[y * 21 + x], isDark ? 0x00 : 0xFF) << x << ", " << y;
            if (isDark)
                dark.push_back(CGPointMake(x, y));
        }
    }
    const auto origins = originsOfUnitSquares(path);
    ASSERT_EQ(origins.size(), dark.size());
    EXPECT_TRUE(std::equal(origins.begin(), origins.end(), dark.begin(), CGPointEqualToPoint));
    EXPECT_TRUE(CGRectEqualToRect(CGPathGetBoundingBox(path), CGRectMake(0, 0, 21, 21)));
}

TEST(QRCodeGenerator, AnEmptyStringHasTheSmallestSymbol)
{
    NSInteger dim = 0;
    const auto symbol = bits("", &dim);
    ASSERT_TRUE(symbol);
    EXPECT_EQ(dim, 21);
    EXPECT_EQ(symbol[0], 21);
    const Bytes bytes(generator().copyQRBytesFromText("", &dim, true));
    EXPECT_EQ(dim, 21);
    EXPECT_FALSE(CGPathIsEmpty(adopt(generator().copyQRPathFromText("", &dim)).get()));
    EXPECT_EQ(dim, 21);
}

TEST(QRCodeGenerator, TheTopLeftModuleIsDark)
{
    NSInteger dim = 0;
    for (const char* text : {"", "hello", "https://example.org/a/longer/one?with=arguments"}) {
        const Bytes onIsBlack(generator().copyQRBytesFromText(text, &dim, true));
        const Bytes onIsWhite(generator().copyQRBytesFromText(text, &dim, false));
        EXPECT_EQ(onIsBlack[0], 0x00);
        EXPECT_EQ(onIsWhite[0], 0xFF);
        for (NSInteger i = 0; i < dim * dim; ++i)
            ASSERT_EQ(onIsBlack[i] ^ onIsWhite[i], 0xFF) << i;
        const auto path = adopt(generator().copyQRPathFromText(text, nullptr));
        EXPECT_TRUE(CGPointEqualToPoint(originsOfUnitSquares(path).front(), CGPointZero));
    }
}

TEST(QRCodeGenerator, AcceptsANullPointerForTheSideLength)
{
    EXPECT_TRUE(bits("hello", nullptr));
    EXPECT_TRUE(Bytes(generator().copyQRBytesFromText("hello", nullptr, true)));
    EXPECT_TRUE(adopt(generator().copyQRPathFromText("hello", nullptr)));
    EXPECT_FALSE(bits(nullptr, nullptr));
    EXPECT_FALSE(Bytes(generator().copyQRBytesFromText(nullptr, nullptr, true)));
    EXPECT_FALSE(adopt(generator().copyQRPathFromText(nullptr, nullptr)));
}

TEST(QRCodeGenerator, ANullStringHasNoSymbolAndSideLengthZero)
{
    NSInteger dim = 99;
    EXPECT_FALSE(bits(nullptr, &dim));
    EXPECT_EQ(dim, 0);
    dim = 99;
    EXPECT_FALSE(Bytes(generator().copyQRBytesFromText(nullptr, &dim, true)));
    EXPECT_EQ(dim, 0);
    dim = 99;
    EXPECT_FALSE(adopt(generator().copyQRPathFromText(nullptr, &dim)));
    EXPECT_EQ(dim, 0);
}

TEST(QRCodeGenerator, EncodesUTF8AtLevelMediumBoostedInTheSmallestVersionWithTheBestMask)
{
    // 14 bytes are the capacity of version 1 at level medium; a single byte fits at the highest level.
    for (const std::string& text :
        {std::string("x"), std::string(14, 'x'), std::string(15, 'x'), std::string("grüße 漢字 🙂"),
            std::string("0123456789"), std::string("HTTPS://EXAMPLE.ORG/"), std::string(700, 'y')}) {
        std::vector<std::uint8_t> scratch(qrcodegen_BUFFER_LEN_MAX), expected(qrcodegen_BUFFER_LEN_MAX);
        ASSERT_TRUE(qrcodegen_encodeText(text.c_str(), scratch.data(), expected.data(), qrcodegen_Ecc_MEDIUM,
            1, 40, qrcodegen_Mask_AUTO, true));
        NSInteger dim = 0;
        const auto symbol = bits(NSString(text), &dim);
        EXPECT_EQ(dim, qrcodegen_getSize(expected.data())) << text;
        EXPECT_EQ(std::memcmp(symbol.get(), expected.data(), qrcodegen_BUFFER_LEN_MAX), 0) << text;
    }
}

TEST(QRCodeGenerator, SidesGrowFrom21To177Modules)
{
    NSInteger dim = 0;
    EXPECT_TRUE(bits(NSString(std::string(14, 'x')), &dim));
    EXPECT_EQ(dim, 21);
    EXPECT_TRUE(bits(NSString(std::string(15, 'x')), &dim));
    EXPECT_EQ(dim, 25);
    EXPECT_TRUE(bits(NSString(std::string(2331, 'x')), &dim));
    EXPECT_EQ(dim, 177);
    const auto path = adopt(generator().copyQRPathFromText(NSString(std::string(2331, 'x')), &dim));
    EXPECT_EQ(dim, 177);
    EXPECT_TRUE(CGRectEqualToRect(CGPathGetBoundingBox(path), CGRectMake(0, 0, 177, 177)));
}

TEST(QRCodeGenerator, AStringEndsAtItsFirstNULCharacter)
{
    const NSString text(std::string_view("abc\0def", 7));
    ASSERT_EQ(text.length(), 7u);
    EXPECT_EQ(std::memcmp(bits(text).get(), bits("abc").get(), qrcodegen_BUFFER_LEN_MAX), 0);
    EXPECT_TRUE(ZRQRCodeGenerator::textFits(NSString(std::string("abc") + '\0' + std::string(5000, 'x'))));
}

TEST(QRCodeGeneratorDeathTest, AStringBeyondCapacityStopsTheProcessByTheEncodersAssertion)
{
    const NSString text(std::string(2332, 'x'));
    constexpr char kReport[] = "qrcodegen_getSize: Assertion .* failed";
    EXPECT_EXIT(
        (void)generator().copyQRBitsFromText(text, nullptr), ::testing::KilledBySignal(SIGABRT), kReport);
    EXPECT_EXIT((void)generator().copyQRBytesFromText(text, nullptr, true),
        ::testing::KilledBySignal(SIGABRT), kReport);
    EXPECT_EXIT(
        (void)generator().copyQRPathFromText(text, nullptr), ::testing::KilledBySignal(SIGABRT), kReport);
}

TEST(QRCodeGenerator, IsThreadSafe)
{
    std::vector<std::string> texts;
    std::vector<Bytes> expected;
    for (int i = 0; i < 8; ++i) {
        texts.emplace_back(20 + 30 * i, static_cast<char>('a' + i));
        expected.push_back(bits(NSString(texts.back())));
    }
    std::atomic<int> differences = 0;
    onThreads(4, [&](int) {
        for (int i = 0; i < 8; ++i) {
            const Bytes own(
                ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRBitsFromText(NSString(texts[i]), nullptr));
            differences += std::memcmp(own.get(), expected[i].get(), qrcodegen_BUFFER_LEN_MAX) != 0;
        }
    });
    EXPECT_EQ(differences, 0);
}

TEST(QRCodeTextFits, EndsAtTheCapacityOfEachMode)
{
    const auto fits = [](std::size_t length, char character) {
        return ZRQRCodeGenerator::textFits(NSString(std::string(length, character)));
    };
    EXPECT_TRUE(fits(0, 'x'));
    EXPECT_TRUE(fits(5596, '7'));
    EXPECT_FALSE(fits(5597, '7'));
    EXPECT_TRUE(fits(3391, 'A'));
    EXPECT_FALSE(fits(3392, 'A'));
    EXPECT_TRUE(fits(2331, 'a'));
    EXPECT_FALSE(fits(2332, 'a'));
    EXPECT_FALSE(fits(1 << 20, '7'));
    EXPECT_FALSE(ZRQRCodeGenerator::textFits(nullptr));
}

TEST(QRCodeTextFits, CountsBytesOfUTF8)
{
    std::string text;
    for (int i = 0; i < 777; ++i)
        text += "漢"; // 3 bytes
    EXPECT_EQ(text.size(), 2331u);
    EXPECT_TRUE(ZRQRCodeGenerator::textFits(NSString(text)));
    EXPECT_FALSE(ZRQRCodeGenerator::textFits(NSString(text + "a")));
    text.resize(2331 - 3);
    EXPECT_FALSE(ZRQRCodeGenerator::textFits(NSString(text + "🙂"))); // 4 bytes
}

TEST(QRCodeTextFits, AgreesWithTheEncoderOnRandomStringsAroundEachCapacity)
{
    constexpr std::size_t kCapacities[] = {5596, 3391, 2331};
    std::mt19937 random(20240607);
    for (int mode = 0; mode < 3; ++mode) {
        for (int trial = 0; trial < 40; ++trial) {
            const std::size_t length = kCapacities[mode] - 4 + random() % 9;
            std::string text(length, ' ');
            for (char& each : text)
                each = character(mode, random);
            // In some trials one character of a wider mode spoils the dense one.
            if (trial % 4 == 0)
                text[random() % length] = character(static_cast<int>(random() % 3), random);
            ASSERT_EQ(ZRQRCodeGenerator::textFits(NSString(text)), encoderTakes(text))
                << "mode " << mode << ", length " << length;
        }
    }
}

TEST(QRCodeTextFits, AgreesWithTheEncoderAtEveryLengthBetweenTheCapacities)
{
    for (std::size_t length = 2200; length < 5700; length += 97) {
        for (const char character : {'7', 'A', 'a'}) {
            const std::string text(length, character);
            ASSERT_EQ(ZRQRCodeGenerator::textFits(NSString(text)), encoderTakes(text)) << length << character;
        }
    }
}
