#include "Foundation/testing/NSLogCapture.h"
#include "support/PDFPages.h"

#include <gtest/gtest.h>

// Functions are seen at work: the colour of a Separation ink is what its function computes from the tint.

namespace {

/// The colour in which a function of one input and three results draws a tint.
CanvasPixel colorOf(const PDFObjectText& function, std::string_view tint)
{
    const auto canvas = drawContent("/Ink cs " + std::string(tint) + " scn 0 0 16 16 re f",
        "/ColorSpace << /Ink [/Separation /Ink /DeviceRGB 10 0 R] >>", {function});
    return canvas.pixel(8, 8);
}

/// The colour of several inputs and three results.
CanvasPixel colorOf(const PDFObjectText& function, std::string_view names, std::string_view tints)
{
    const auto canvas = drawContent("/Inks cs " + std::string(tints) + " scn 0 0 16 16 re f",
        "/ColorSpace << /Inks [/DeviceN [" + std::string(names) + "] /DeviceRGB 10 0 R] >>", {function});
    return canvas.pixel(8, 8);
}

/// Whether a function makes the colour space that uses it invalid.
bool isInvalidFunction(
    const PDFObjectText& function, std::string_view names = "/Ink", std::string_view tints = "0")
{
    const NSLogCapture log;
    colorOf(function, names, tints);
    return !log.messages().empty()
        && log.messages().front().ends_with("a colour space is invalid; gray is used");
}

PDFObjectText sampled(std::string_view entries, std::string_view data)
{
    return pdfStream("/FunctionType 0 " + std::string(entries), data);
}

constexpr std::string_view kUnitRange = "/Domain [0 1] /Range [0 1 0 1 0 1] ";

TEST(PDFFunctionExponential, InterpolatesByAPower)
{
    const auto linear = "<< /FunctionType 2 /Domain [0 1] /C0 [1 0 0.2] /C1 [0 1 0.6] /N 1 >>";
    EXPECT_EQ(colorOf(linear, "0"), rgba(255, 0, 51, 255));
    EXPECT_EQ(colorOf(linear, "0.5"), rgba(128, 128, 102, 255));
    EXPECT_EQ(colorOf(linear, "1"), rgba(0, 255, 153, 255));
    const auto square = "<< /FunctionType 2 /Domain [0 1] /C0 [0 0 0] /C1 [1 0.8 0] /N 2 >>";
    EXPECT_EQ(colorOf(square, "0.6"), rgba(92, 73, 0, 255)); // 0.36
}

TEST(PDFFunctionExponential, HasDefaultEnds)
{
    // One result, 0 to 1: green and blue are missing, so 0.
    EXPECT_EQ(colorOf("<< /FunctionType 2 /Domain [0 1] /N 1 >>", "0.2"), rgba(51, 0, 0, 255));
    EXPECT_EQ(colorOf("<< /FunctionType 2 /Domain [0 1] /C0 [0.4] /N 1 >>", "0.25"), rgba(140, 0, 0, 255));
    EXPECT_EQ(colorOf("<< /FunctionType 2 /Domain [0 1] /C1 [0.4] /N 1 >>", "0.5"), rgba(51, 0, 0, 255));
}

TEST(PDFFunctionExponential, ClampsToDomainAndRange)
{
    const auto function = "<< /FunctionType 2 /Domain [0.2 0.6] /Range [0.4 1 0 0.2 0 1]"
                          " /C0 [0 0 0] /C1 [1 1 1] /N 1 >>";
    EXPECT_EQ(colorOf(function, "0"), rgba(102, 51, 51, 255));
    EXPECT_EQ(colorOf(function, "1"), rgba(153, 51, 153, 255));
}

TEST(PDFFunctionExponential, HasZerosWhereThePowerIsNotDefined)
{
    const auto function = "<< /FunctionType 2 /Domain [-1 1] /C0 [0.2 0.2 0.2] /C1 [0.6 0.6 0.2] /N -1 >>";
    EXPECT_EQ(colorOf(function, "0"), rgba(0, 0, 0, 255)); // not infinite
    const auto root = "<< /FunctionType 2 /Domain [-1 1] /C0 [0.2 0.2 1] /C1 [0.6 0.6 1] /N 0.5 >>";
    EXPECT_EQ(colorOf(root, "-1"), rgba(0, 0, 0, 255));
    EXPECT_EQ(colorOf(root, "1"), rgba(153, 153, 255, 255));
}

TEST(PDFFunctionSampled, InterpolatesBetweenSamples)
{
    const auto function = sampled(
        std::string(kUnitRange) + "/Size [3] /BitsPerSample 8", "\xFF\x01\x10\x01\x65\x20\x65\xFF\x30");
    EXPECT_EQ(colorOf(function, "0"), rgba(255, 1, 16, 255));
    EXPECT_EQ(colorOf(function, "0.25"), rgba(128, 51, 24, 255));
    EXPECT_EQ(colorOf(function, "0.5"), rgba(1, 101, 32, 255));
    EXPECT_EQ(colorOf(function, "0.75"), rgba(51, 178, 40, 255));
    EXPECT_EQ(colorOf(function, "1"), rgba(101, 255, 48, 255));
}

TEST(PDFFunctionSampled, ReadsSamplesOfEachSize)
{
    using namespace std::string_literals;
    const struct {
        int bits;
        std::string data;
        CanvasPixel color; // at the second of two samples
    } cases[] = {
        {1, "\x14"s, rgba(255, 0, 255, 255)},                    // 000 101
        {2, "\x02\x70"s, rgba(170, 85, 255, 255)},               // 00 00 00 10 01 11
        {4, "\x00\x03\xA5"s, rgba(51, 170, 85, 255)},            //
        {8, "\x00\x00\x00\x12\x34\x56"s, rgba(18, 52, 86, 255)}, //
        {12, "\x00\x00\x00\x00\x08\x00\x40\x0F\xFF"s, rgba(128, 64, 255, 255)},
        {16, "\x00\x00\x00\x00\x00\x00\x80\x00\x40\x00\xFF\xFF"s, rgba(128, 64, 255, 255)},
        {24, std::string(9, '\0') + "\x80\x00\x00\x40\x00\x00\xFF\xFF\xFF"s, rgba(128, 64, 255, 255)},
        {32, std::string(12, '\0') + "\x80\x00\x00\x00\x40\x00\x00\x00\xFF\xFF\xFF\xFF"s,
            rgba(128, 64, 255, 255)},
    };
    for (const auto& [bits, data, color] : cases) {
        SCOPED_TRACE(bits);
        const std::string size = "/Size [2] /BitsPerSample " + std::to_string(bits);
        EXPECT_EQ(colorOf(sampled(std::string(kUnitRange) + size, data), "1"), color);
        EXPECT_TRUE(isInvalidFunction(sampled(std::string(kUnitRange) + size, data.substr(1))));
    }
}

TEST(PDFFunctionSampled, EncodesAndDecodes)
{
    // The input 0 is the last sample, 1 the first; a sample of 255 is 0.2, one of 0 is 1.
    const auto function = sampled("/Domain [0 1] /Range [0 1 0 1 0 0.4] /Size [2] /Encode [1 0] /Decode [1 "
                                  "0.2 0 1 0 1] /BitsPerSample 8",
        std::string("\x00\x00\xFF\xFF\x80\xFF", 6));
    EXPECT_EQ(colorOf(function, "0"), rgba(51, 128, 102, 255));
    EXPECT_EQ(colorOf(function, "1"), rgba(255, 0, 102, 255));
    EXPECT_EQ(colorOf(function, "0.5"), rgba(153, 64, 102, 255));
}

TEST(PDFFunctionSampled, InterpolatesInSeveralDimensions)
{
    // Samples of 2 x 3: the first input varies fastest. Red is the first input, green half of the second;
    // blue is a sample of its own at (1, 1).
    const std::string data("\x00\x00\x00\xFF\x00\x00\x00\x40\x00\xFF\x40\xC8\x00\x80\x00\xFF\x80\x00", 18);
    const auto function =
        sampled("/Domain [0 1 0 1] /Range [0 1 0 1 0 1] /Size [2 3] /BitsPerSample 8", data);
    EXPECT_EQ(colorOf(function, "/A /B", "0 0"), rgba(0, 0, 0, 255));
    EXPECT_EQ(colorOf(function, "/A /B", "1 0"), rgba(255, 0, 0, 255));
    EXPECT_EQ(colorOf(function, "/A /B", "1 0.5"), rgba(255, 64, 200, 255));
    EXPECT_EQ(colorOf(function, "/A /B", "1 1"), rgba(255, 128, 0, 255));
    EXPECT_EQ(colorOf(function, "/A /B", "0 1"), rgba(0, 128, 0, 255));
    EXPECT_EQ(colorOf(function, "/A /B", "0.4 0.25"), rgba(102, 32, 40, 255)); // 200 * 0.4 * 0.5
}

TEST(PDFFunctionSampled, IsInvalidWithoutAllOfItsEntries)
{
    const std::string data = "abcdef";
    for (const char* entries : {
             "/Domain [0 1] /Size [2] /BitsPerSample 8",                       // no range
             "/Range [0 1 0 1 0 1] /Size [2] /BitsPerSample 8",                // no domain
             "/Domain [0 1] /Range [0 1 0 1 0 1] /BitsPerSample 8",            // no size
             "/Domain [0 1] /Range [0 1 0 1 0 1] /Size [0] /BitsPerSample 8",  //
             "/Domain [0 1] /Range [0 1 0 1 0 1] /Size [-2] /BitsPerSample 8", //
             "/Domain [0 1] /Range [0 1 0 1 0 1] /Size [3] /BitsPerSample 8",  // more than there are
             "/Domain [0 1] /Range [0 1 0 1 0 1] /Size [2] /BitsPerSample 0",  //
             "/Domain [0 1] /Range [0 1 0 1 0 1] /Size [2] /BitsPerSample 7",  //
             "/Domain [0 1] /Range [0 1 0 1 0 1] /Size [2] /BitsPerSample 99", //
             "/Domain [0 1] /Range [0 1 0 1 1 0] /Size [2] /BitsPerSample 8",  // 1 to 0
             "/Domain [1 0] /Range [0 1 0 1 0 1] /Size [2] /BitsPerSample 8",  //
         }) {
        SCOPED_TRACE(entries);
        EXPECT_TRUE(isInvalidFunction(sampled(entries, data)));
    }
    EXPECT_EQ(colorOf(sampled("/Domain [0 1] /Range [0 1 0 1 0 1] /Size [2] /BitsPerSample 8", data), "0"),
        rgba('a', 'b', 'c', 255));
}

TEST(PDFFunctionSampled, RefusesSizesWhoseProductOverflows)
{
    std::string inks;
    std::string tints;
    std::string domain;
    std::string size;
    for (int i = 0; i < 8; ++i) {
        inks += "/Ink" + std::to_string(i) + " ";
        tints += "1 ";
        domain += "0 1 ";
        size += "1000000000 ";
    }
    const auto function =
        sampled("/Domain [" + domain + "] /Range [0 1 0 1 0 1] /Size [" + size + "] /BitsPerSample 8", "abc");
    EXPECT_TRUE(isInvalidFunction(function, inks, tints));
}

TEST(PDFFunctionStitched, ChoosesAPart)
{
    const auto function =
        "<< /FunctionType 3 /Domain [0 1] /Bounds [0.25 0.5] /Encode [0 1 0 1 1 0] /Functions ["
        "<< /FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [0 0 0] /N 1 >>"
        "<< /FunctionType 2 /Domain [0 1] /C0 [0 0.2 0] /C1 [0 1 0] /N 1 >>"
        "<< /FunctionType 2 /Domain [0 1] /C0 [0 0 0] /C1 [0 0 1] /N 1 >>] >>";
    EXPECT_EQ(colorOf(function, "0"), rgba(255, 0, 0, 255));
    EXPECT_EQ(colorOf(function, "0.125"), rgba(128, 0, 0, 255));
    EXPECT_EQ(colorOf(function, "0.25"), rgba(0, 51, 0, 255)); // a bound belongs to the part above
    EXPECT_EQ(colorOf(function, "0.375"), rgba(0, 153, 0, 255));
    EXPECT_EQ(colorOf(function, "0.5"), rgba(0, 0, 255, 255)); // encoded backwards
    EXPECT_EQ(colorOf(function, "0.75"), rgba(0, 0, 128, 255));
    EXPECT_EQ(colorOf(function, "1"), rgba(0, 0, 0, 255));
}

TEST(PDFFunctionStitched, AllowsPartsWithoutExtent)
{
    const auto function = "<< /FunctionType 3 /Domain [0 1] /Bounds [0 1] /Encode [0 1 0 1 0 1] /Functions ["
                          "<< /FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [1 0 0] /N 1 >>"
                          "<< /FunctionType 2 /Domain [0 1] /C0 [0 0 0] /C1 [0 1 0] /N 1 >>"
                          "<< /FunctionType 2 /Domain [0 1] /C0 [0 0 0.4] /C1 [0 0 1] /N 1 >>] >>";
    EXPECT_EQ(colorOf(function, "0"), rgba(0, 0, 0, 255));
    EXPECT_EQ(colorOf(function, "0.8"), rgba(0, 204, 0, 255));
    EXPECT_EQ(colorOf(function, "1"), rgba(0, 0, 102, 255));
}

TEST(PDFFunctionStitched, IsInvalidUnlessItsPartsFit)
{
    const std::string part = "<< /FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [1 0 0] /N 1 >>";
    const std::string single = "<< /FunctionType 2 /Domain [0 1] /C0 [1] /C1 [1] /N 1 >>";
    const std::string wide =
        "<< /FunctionType 3 /Domain [0 1 0 1] /Bounds [] /Encode [0 1] /Functions [" + part + "] >>";
    const auto stitched = [](const std::string& parts, const std::string& bounds, const std::string& encode) {
        return "<< /FunctionType 3 /Domain [0 1] /Functions [" + parts + "] /Bounds [" + bounds
            + "] /Encode [" + encode + "] >>";
    };
    EXPECT_EQ(colorOf(stitched(part + part, "0.5", "0 1 0 1"), "0"), rgba(255, 0, 0, 255));
    EXPECT_TRUE(isInvalidFunction(stitched(part + part, "", "0 1 0 1")));
    EXPECT_TRUE(isInvalidFunction(stitched(part + part, "0.5", "0 1 0")));
    EXPECT_TRUE(
        isInvalidFunction(stitched(part + part, "2", "0 1 0 1"))); // the second part ends before it starts
    EXPECT_TRUE(isInvalidFunction(stitched(part + part, "-1", "0 1 0 1")));
    EXPECT_TRUE(isInvalidFunction(stitched(part + single, "0.5", "0 1 0 1")));
    EXPECT_TRUE(isInvalidFunction(stitched("", "", "")));
    EXPECT_TRUE(isInvalidFunction(wide));
    EXPECT_TRUE(isInvalidFunction(stitched("10 0 R", "", "0 1"))); // itself
}

TEST(PDFFunctionStitched, IsRecordedWithinLimits)
{
    // Sixteen functions, each of two copies of the next one: 65,536 of the last.
    std::vector<PDFObjectText> objects;
    for (int i = 0; i < 16; ++i) {
        const std::string next = std::to_string(kFirstPDFObject + i + 1) + " 0 R ";
        objects.push_back("<< /FunctionType 3 /Domain [0 1] /Bounds [0.5] /Encode [0 1 0 1] /Functions ["
            + next + next + "] >>");
    }
    objects.push_back("<< /FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [1 0 0] /N 1 >>");
    const auto canvas = drawContent("0 1 0 rg 0 0 16 16 re f /Ink cs 0 scn 0 0 16 16 re f",
        "/ColorSpace << /Ink [/Separation /Ink /DeviceRGB 10 0 R] >>", objects);
    EXPECT_NE(canvas.pixel(8, 8), rgba(255, 0, 0, 255));
}

TEST(PDFFunctionCalculator, ComputesColors)
{
    const auto function = [](std::string_view program) {
        return pdfStream("/FunctionType 4 /Domain [0 1] /Range [0 1 0 1 0 1]", program);
    };
    EXPECT_EQ(colorOf(function("{dup 2 div exch 1 exch sub 0.2}"), "0.4"), rgba(51, 153, 51, 255));
    EXPECT_EQ(colorOf(function("{9 -9 0.4}"), "0.4"), rgba(255, 0, 102, 255)); // clamped
    EXPECT_EQ(colorOf(function("{pop}"), "1"), rgba(0, 0, 0, 255));
    EXPECT_TRUE(isInvalidFunction(function("{frobnicate}")));
    EXPECT_TRUE(isInvalidFunction(pdfStream("/FunctionType 4 /Domain [0 1]", "{1 1}"))); // no range
    EXPECT_TRUE(isInvalidFunction("<< /FunctionType 4 /Domain [0 1] /Range [0 1 0 1 0 1] >>"));
}

TEST(PDFFunction, IsInvalidWithAnUnknownTypeOrTooManyValues)
{
    EXPECT_TRUE(isInvalidFunction("<< /FunctionType 1 /Domain [0 1] /C0 [1 1 1] /C1 [1 1 1] /N 1 >>"));
    EXPECT_TRUE(isInvalidFunction("<< /Domain [0 1] /C0 [1 1 1] /C1 [1 1 1] /N 1 >>"));
    EXPECT_TRUE(isInvalidFunction("null"));
    const auto ofCount = [](int count) {
        std::string ends;
        for (int i = 0; i < count; ++i)
            ends += "1 ";
        return "<< /FunctionType 2 /Domain [0 1] /C0 [" + ends + "] /C1 [" + ends + "] /N 1 >>";
    };
    EXPECT_EQ(colorOf(ofCount(32), "0"), rgba(255, 255, 255, 255));
    EXPECT_TRUE(isInvalidFunction(ofCount(33)));
}

} // namespace
