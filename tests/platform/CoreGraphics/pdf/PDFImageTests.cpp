#include "Foundation/testing/NSLogCapture.h"
#include "support/PDFPages.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;

/// The entries of an image XObject.
std::string imageEntries(int width, int height, int bits, const std::string& further)
{
    return "/Type /XObject /Subtype /Image /Width " + std::to_string(width) + " /Height "
        + std::to_string(height) + " /BitsPerComponent " + std::to_string(bits) + " " + further;
}

/// Draws the image 10 0 R over the page of 16 × 16 points.
Canvas drawImage(const std::vector<PDFObjectText>& objects, const std::string& operators = "")
{
    return drawContent(operators + " 16 0 0 16 0 0 cm /Im Do", "/XObject << /Im 10 0 R >>", objects);
}

Canvas drawImage(const std::string& entries, const std::string& data)
{
    return drawImage({pdfStream(entries, data)});
}

/// The lines that drawing logs.
std::vector<std::string> messagesOf(const std::vector<PDFObjectText>& objects)
{
    const NSLogCapture log;
    drawImage(objects);
    return log.messages();
}

bool isNotDrawn(const std::string& entries, const std::string& data, std::string_view reason)
{
    const auto messages = messagesOf({pdfStream(entries, data)});
    return messages.size() == 1 && messages[0].ends_with(reason);
}

TEST(PDFImage, FillsTheUnitSquareWithItsRowsFromTheTop)
{
    const auto canvas = drawImage(
        imageEntries(2, 2, 8, "/ColorSpace /DeviceRGB"), "\xFF\x00\x00\x00\xFF\x00\x00\x00\xFF\x10\x20\x30"s);
    for (const int near : {0, 7}) { // pixels of the image are squares
        EXPECT_EQ(canvas.pixel(near, near), rgba(255, 0, 0, 255));
        EXPECT_EQ(canvas.pixel(8 + near, near), rgba(0, 255, 0, 255));
        EXPECT_EQ(canvas.pixel(near, 8 + near), rgba(0, 0, 255, 255));
        EXPECT_EQ(canvas.pixel(8 + near, 8 + near), rgba(16, 32, 48, 255));
    }
}

TEST(PDFImage, HasSamplesOfEachSize)
{
    const struct {
        int bits;
        std::string data; // two rows of three gray pixels
        std::array<int, 6> grays;
    } cases[] = {
        {1, "\xA0\x40"s, {255, 0, 255, 0, 255, 0}},
        {2, "\x1B\xE4"s, {0, 85, 170, 255, 170, 85}},
        {4, "\x0F\x50\xA1\x20"s, {0, 255, 85, 170, 17, 34}},
        {8, "\x01\x02\x03\x0A\x0B\x0C"s, {1, 2, 3, 10, 11, 12}},
        {16, "\x00\x00\xFF\xFF\x80\x00\x10\x10\x20\x20\x7F\xFF"s, {0, 255, 128, 16, 32, 127}},
    };
    for (const auto& [bits, data, grays] : cases) {
        SCOPED_TRACE(bits);
        const auto canvas = drawContent("3 0 0 2 0 0 cm /Im Do", "/XObject << /Im 10 0 R >>",
            {pdfStream(imageEntries(3, 2, bits, "/ColorSpace /DeviceGray"), data)});
        for (int i = 0; i < 6; ++i) {
            const int gray = grays[std::size_t(i)];
            EXPECT_EQ(canvas.pixel(i % 3, 14 + i / 3), rgba(gray, gray, gray, 255)) << i;
        }
    }
}

TEST(PDFImage, HasColorsOfEachSpace)
{
    EXPECT_EQ(drawImage(imageEntries(1, 1, 8, "/ColorSpace /DeviceCMYK"), "\xFF\x00\x00\x00"s).pixel(8, 8),
        rgba(0, 159, 227, 255));
    EXPECT_EQ(drawImage(imageEntries(1, 1, 4, "/ColorSpace /DeviceRGB"), "\x3A\xF0"s).pixel(8, 8),
        rgba(51, 170, 255, 255));
    EXPECT_EQ(
        drawImage(imageEntries(1, 1, 16, "/ColorSpace /DeviceRGB"), "\x33\x33\x66\x66\x99\x99"s).pixel(8, 8),
        rgba(51, 102, 153, 255));
    const auto indexed = drawImage(
        imageEntries(2, 1, 4, "/ColorSpace [/Indexed /DeviceRGB 2 <FF0000 00FF00 336699>]"), "\x29"s);
    EXPECT_EQ(indexed.pixel(2, 8), rgba(51, 102, 153, 255));
    EXPECT_EQ(indexed.pixel(12, 8), rgba(51, 102, 153, 255)); // 9 is beyond the table
    const auto lab = drawImage(
        imageEntries(1, 1, 8, "/ColorSpace [/Lab << /Range [-128 127 -128 127] >>]"), "\xFF\x80\x80"s);
    EXPECT_EQ(lab.pixel(8, 8), rgba(255, 255, 255, 255)); // 100, 0, 0
}

TEST(PDFImage, DecodesItsSamples)
{
    const auto inverted =
        drawImage(imageEntries(2, 1, 8, "/ColorSpace /DeviceGray /Decode [1 0]"), "\x00\x33"s);
    EXPECT_EQ(inverted.pixel(2, 8), rgba(255, 255, 255, 255));
    EXPECT_EQ(inverted.pixel(12, 8), rgba(204, 204, 204, 255));
    const auto partly = drawImage(
        imageEntries(1, 1, 8, "/ColorSpace /DeviceRGB /Decode [0 0.2 1 0 0.4 0.4]"), "\xFF\x33\x77"s);
    EXPECT_EQ(partly.pixel(8, 8), rgba(51, 204, 102, 255));
    // Of an index, samples count from the start of the pair.
    const auto table = drawImage(
        imageEntries(1, 1, 1, "/ColorSpace [/Indexed /DeviceGray 3 <00112233>] /Decode [3 0]"), "\x00"s);
    EXPECT_EQ(table.pixel(8, 8), rgba(51, 51, 51, 255));
    const auto tooShort =
        drawImage(imageEntries(1, 1, 8, "/ColorSpace /DeviceRGB /Decode [1 0]"), "\x11\x22\x33"s);
    EXPECT_EQ(tooShort.pixel(8, 8), rgba(17, 34, 51, 255));
}

TEST(PDFImage, AveragesWhereItShrinks)
{
    std::string stripes;
    for (int i = 0; i < 64 * 64; ++i)
        stripes += i % 2 ? '\xFF' : '\x00';
    const auto canvas = drawImage(imageEntries(64, 64, 8, "/ColorSpace /DeviceGray"), stripes);
    EXPECT_NEAR(canvas.pixel(8, 8).bytes[0], 128, 1);
}

TEST(PDFImage, InterpolatesOnRequest)
{
    const auto smooth =
        drawImage(imageEntries(2, 1, 8, "/ColorSpace /DeviceGray /Interpolate true"), "\x00\xFF"s);
    EXPECT_GT(smooth.pixel(7, 8).bytes[0], 60);
    EXPECT_LT(smooth.pixel(7, 8).bytes[0], 128);
}

TEST(PDFImage, HasTheFillAlpha)
{
    const auto canvas = drawContent("/Half gs 16 0 0 16 0 0 cm /Im Do",
        "/XObject << /Im 10 0 R >> /ExtGState << /Half << /ca 0.5 >> >>",
        {pdfStream(imageEntries(1, 1, 8, "/ColorSpace /DeviceGray"), "\xFF"s)});
    EXPECT_EQ(canvas.pixel(8, 8), rgba(128, 128, 128, 128));
}

TEST(PDFImageStencil, PaintsTheFillColorWhereItIsZero)
{
    const auto stencil = [](const std::string& decode) {
        return pdfStream("/Subtype /Image /ImageMask true /Width 4 /Height 2 " + decode, "\x30\xA0"s);
    };
    const auto picture = [](const PDFObjectText& object) {
        return drawContent("1 0 0 rg 4 0 0 2 2 3 cm /Im Do", "/XObject << /Im 10 0 R >>", {object});
    };
    const std::string above(11 * 16, '.');
    const std::string below(3 * 16, '.');
    EXPECT_COVERAGE(picture(stencil("")), above + "..##............" + "...#.#.........." + below);
    EXPECT_COVERAGE(
        picture(stencil("/Decode [1 0]")), above + "....##.........." + "..#.#..........." + below);
    EXPECT_EQ(picture(stencil("")).pixel(2, 11), rgba(255, 0, 0, 255));
}

TEST(PDFImageStencil, IsPaintedWithAPattern)
{
    const auto canvas = drawContent("/Pattern cs /P scn 16 0 0 16 0 0 cm /Im Do",
        "/XObject << /Im 10 0 R >> /Pattern << /P << /PatternType 2 /Shading << /ShadingType 2 /ColorSpace "
        "/DeviceRGB"
        " /Coords [0 0 8 0] /Extend [true true] /Function << /FunctionType 3 /Domain [0 1] /Bounds [0.5] "
        "/Encode [0 1 0 1]"
        " /Functions [<< /FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [1 0 0] /N 1 >>"
        " << /FunctionType 2 /Domain [0 1] /C0 [0 0 1] /C1 [0 0 1] /N 1 >>] >> >> >> >>",
        {pdfStream("/Subtype /Image /ImageMask true /Width 2 /Height 2", "\x40\x80"s)});
    EXPECT_EQ(canvas.pixel(1, 1), rgba(255, 0, 0, 255));
    EXPECT_EQ(canvas.pixel(6, 1), rgba(0, 0, 255, 255));
    EXPECT_EQ(canvas.pixel(12, 1), rgba(0, 0, 0, 0));
    EXPECT_EQ(canvas.pixel(1, 12), rgba(0, 0, 0, 0));
    EXPECT_EQ(canvas.pixel(12, 12), rgba(0, 0, 255, 255));
}

TEST(PDFImageStencil, LeavesThePageBeforeItWhereItsPatternTakesTooLong)
{
    std::string cell;
    for (int i = 0; i < 500'001; ++i)
        cell += "n ";
    const auto canvas = drawContent("1 0 0 rg 0 0 16 16 re f /Pattern cs /P scn 16 0 0 16 0 0 cm /Im Do",
        "/XObject << /Im 10 0 R >> /Pattern << /P 11 0 R >>",
        {pdfStream("/Subtype /Image /ImageMask true /Width 1 /Height 1", "\x00"s),
            pdfStream("/PatternType 1 /PaintType 1 /BBox [0 0 4 4] /XStep 4 /YStep 4", cell)});
    EXPECT_EQ(canvas.pixel(8, 8), rgba(255, 0, 0, 255));
}

TEST(PDFImageStencil, PaintsNothingInNoInk)
{
    const auto canvas = drawContent("/CS cs 1 scn 16 0 0 16 0 0 cm /Im Do",
        "/XObject << /Im 10 0 R >> /ColorSpace << /CS [/Separation /None /DeviceGray << /FunctionType 2 "
        "/Domain [0 1]"
        " /N 1 >>] >>",
        {pdfStream("/Subtype /Image /ImageMask true /Width 1 /Height 1", "\x00"s)});
    EXPECT_EQ(canvas.alpha(8, 8), 0);
}

TEST(PDFImageMask, HidesWhereAStencilIsOne)
{
    const auto image =
        pdfStream(imageEntries(1, 1, 8, "/ColorSpace /DeviceRGB /Mask 11 0 R"), "\xFF\x00\x33"s);
    const auto mask = [](const std::string& decode) {
        return pdfStream("/Subtype /Image /ImageMask true /Width 2 /Height 1 " + decode, "\x40"s);
    };
    const auto canvas = drawImage({image, mask("")});
    EXPECT_EQ(canvas.pixel(2, 8), rgba(255, 0, 51, 255));
    EXPECT_EQ(canvas.pixel(12, 8), rgba(0, 0, 0, 0));
    const auto inverted = drawImage({image, mask("/Decode [1 0]")});
    EXPECT_EQ(inverted.pixel(2, 8), rgba(0, 0, 0, 0));
    EXPECT_EQ(inverted.pixel(12, 8), rgba(255, 0, 51, 255));
}

TEST(PDFImageMask, HidesColorsOfAKey)
{
    // Of 2 bits: 0, 1, 2, 3. Compared before they are decoded.
    const auto grays =
        drawImage(imageEntries(4, 1, 2, "/ColorSpace /DeviceGray /Mask [1 2] /Decode [1 0]"), "\x1B"s);
    EXPECT_EQ(grays.alpha(2, 8), 255);
    EXPECT_EQ(grays.alpha(6, 8), 0);
    EXPECT_EQ(grays.alpha(10, 8), 0);
    EXPECT_EQ(grays.pixel(14, 8), rgba(0, 0, 0, 255));
    // All components must lie in their intervals.
    const auto colors = drawImage(imageEntries(2, 1, 8, "/ColorSpace /DeviceRGB /Mask [10 20 0 255 30 30]"),
        "\x0A\x00\x1E\x0A\x00\x1F"s);
    EXPECT_EQ(colors.alpha(2, 8), 0);
    EXPECT_EQ(colors.pixel(12, 8), rgba(10, 0, 31, 255));
}

TEST(PDFImageSoftMask, GivesTheAlpha)
{
    const auto mask = pdfStream(imageEntries(2, 1, 8, "/ColorSpace /DeviceGray"), "\x33\xFF"s);
    const auto canvas = drawImage({pdfStream(imageEntries(2, 1, 8, "/ColorSpace /DeviceRGB /SMask 11 0 R"),
                                       "\xFF\x00\x00\x00\xFF\x00"s),
        mask});
    EXPECT_EQ(canvas.pixel(2, 8), rgba(51, 0, 0, 51));
    EXPECT_EQ(canvas.pixel(12, 8), rgba(0, 255, 0, 255));
}

TEST(PDFImageSoftMask, MayHaveAnotherSize)
{
    const auto fine = pdfStream(imageEntries(4, 2, 1, "/ColorSpace /DeviceGray"), "\x50\xA0"s);
    const auto canvas =
        drawImage({pdfStream(imageEntries(1, 1, 8, "/ColorSpace /DeviceGray /SMask 11 0 R"), "\xFF"s), fine});
    EXPECT_EQ(canvas.alpha(2, 2), 0);
    EXPECT_EQ(canvas.alpha(6, 2), 255);
    EXPECT_EQ(canvas.alpha(2, 12), 255);
    EXPECT_EQ(canvas.alpha(6, 12), 0);
    // A single sample for all pixels, decoded the other way round.
    const auto coarse = pdfStream(imageEntries(1, 1, 8, "/ColorSpace /DeviceGray /Decode [1 0]"), "\x33"s);
    const auto faded = drawImage(
        {pdfStream(imageEntries(2, 1, 8, "/ColorSpace /DeviceGray /SMask 11 0 R"), "\xFF\x00"s), coarse});
    EXPECT_EQ(faded.pixel(2, 8), rgba(204, 204, 204, 204));
    EXPECT_EQ(faded.pixel(12, 8), rgba(0, 0, 0, 204));
}

TEST(PDFImageSoftMask, TakesItsMatteOut)
{
    // Half of red on a white matte is stored as (255, 128, 128).
    const auto mask = pdfStream(imageEntries(1, 1, 8, "/ColorSpace /DeviceGray /Matte [1 1 1]"), "\x80"s);
    const auto canvas = drawImage(
        {pdfStream(imageEntries(1, 1, 8, "/ColorSpace /DeviceRGB /SMask 11 0 R"), "\xFF\x7F\x7F"s), mask});
    EXPECT_EQ(canvas.pixel(8, 8), rgba(128, 0, 0, 128));
}

TEST(PDFImage, HasZerosForMissingData)
{
    const auto canvas = drawImage(imageEntries(1, 4, 8, "/ColorSpace /DeviceRGB"), "\xFF\x80\x40\x33\x66"s);
    EXPECT_EQ(canvas.pixel(8, 1), rgba(255, 128, 64, 255));
    EXPECT_EQ(canvas.pixel(8, 6), rgba(51, 102, 0, 255));
    EXPECT_EQ(canvas.pixel(8, 14), rgba(0, 0, 0, 255));
}

TEST(PDFImage, IsReportedWhereItIsNotDrawn)
{
    const std::string gray = "/ColorSpace /DeviceGray";
    EXPECT_TRUE(isNotDrawn(
        imageEntries(1, 1, 8, gray + " /Filter /JPXDecode"), "x", "an image is not drawn (JPXDecode)"));
    EXPECT_TRUE(isNotDrawn(
        imageEntries(1, 1, 1, gray + " /Filter /JBIG2Decode"), "x", "an image is not drawn (JBIG2Decode)"));
    EXPECT_TRUE(isNotDrawn(imageEntries(1, 1, 1, gray + " /Filter [/CCITTFaxDecode]"), "x",
        "an image is not drawn (CCITTFaxDecode)"));
    EXPECT_TRUE(isNotDrawn(imageEntries(1, 1, 8, gray + " /Filter /DCTDecode"), "x",
        "an image is not drawn (invalid DCTDecode)"));
    EXPECT_TRUE(isNotDrawn(imageEntries(1, 1, 8, ""), "x", "an image is not drawn (invalid colour space)"));
    EXPECT_TRUE(isNotDrawn(
        imageEntries(1, 1, 8, "/ColorSpace /Pattern"), "x", "an image is not drawn (invalid colour space)"));
    for (const int bits : {0, 3, 31, -1, 32})
        EXPECT_TRUE(isNotDrawn(imageEntries(1, 1, bits, gray), "x", "an image is not drawn (invalid size)"))
            << bits;
    EXPECT_TRUE(isNotDrawn(imageEntries(0, 1, 8, gray), "x", "an image is not drawn (invalid size)"));
    EXPECT_TRUE(isNotDrawn(imageEntries(1, -1, 8, gray), "x", "an image is not drawn (invalid size)"));
    EXPECT_TRUE(
        isNotDrawn(imageEntries(1, 1'000'000'000, 8, gray), "x", "an image is not drawn (invalid size)"));
}

TEST(PDFImage, IsRecordedWithinLimits)
{
    const std::string tooMany = "the rest of the page is left out: too many image pixels";
    const auto image = [](int width, int height, const std::string& further) {
        return pdfStream(imageEntries(width, height, 1, "/ColorSpace /DeviceGray " + further), "x");
    };
    const auto limited = [&](const std::vector<PDFObjectText>& objects) {
        const auto messages = messagesOf(objects);
        return messages.size() == 1 && messages[0].ends_with(tooMany);
    };
    EXPECT_TRUE(limited({image(4097, 4097, "")}));
    // A mask of another shape makes an image as large as both.
    EXPECT_TRUE(limited({image(100'000, 1, "/SMask 11 0 R"), image(1, 100'000, "")}));
}

TEST(PDFImage, IsDecodedOnceAPage)
{
    // 100 times 250,000 pixels would be too many.
    std::string content;
    for (int i = 0; i < 100; ++i)
        content += "q 16 0 0 16 0 0 cm /Im Do Q ";
    const NSLogCapture log;
    const auto canvas = drawContent(content, "/XObject << /Im 10 0 R >>",
        {pdfStream(imageEntries(500, 500, 1, "/ColorSpace /DeviceGray /Decode [1 0]"), "")});
    EXPECT_EQ(canvas.pixel(8, 8), rgba(255, 255, 255, 255));
    EXPECT_TRUE(log.messages().empty());
}

/// A JPEG image of 8 × 8 pixels of one colour: a single coefficient for each component, and tables that are
/// just large enough. `adobe` is the colour transform of its Adobe marker; without one, -1.
std::string jpegOf(const std::vector<int>& levels, int adobe = -1)
{
    const auto segment = [](char marker, const std::string& body) {
        return "\xFF"s + marker + char((body.size() + 2) / 256) + char((body.size() + 2) % 256) + body;
    };
    const char count = char(levels.size());
    std::string file = "\xFF\xD8"s;
    if (adobe >= 0)
        file += segment('\xEE', "Adobe\x00\x64\x00\x00\x00\x00"s + char(adobe));
    file += segment('\xDB', "\x00"s + std::string(64, '\x01'));
    std::string frame = "\x08\x00\x08\x00\x08"s + count;
    std::string scan(1, count);
    for (char i = 1; i <= count; ++i) {
        frame += i + "\x11\x00"s;
        scan += i + "\x00"s;
    }
    file += segment('\xC0', frame);
    // Categories 0 to 11 have codes of four bits each; the end of a block one bit, 0.
    file += segment('\xC4',
        "\x00\x00\x00\x00\x0C"s + std::string(12, '\0')
            + "\x00\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B"s);
    file += segment('\xC4', "\x10\x01"s + std::string(15, '\0') + "\x00"s);
    file += segment('\xDA', scan + "\x00\x3F\x00"s);
    std::string bits;
    const auto append = [&bits](int value, int length) {
        for (int i = length - 1; i >= 0; --i)
            bits += value >> i & 1 ? '1' : '0';
    };
    for (const int level : levels) {
        const int coefficient = 8 * (level - 128);
        int category = 0;
        while (std::abs(coefficient) >> category)
            ++category;
        append(category, 4);
        append(coefficient < 0 ? coefficient + (1 << category) - 1 : coefficient, category);
        append(0, 1);
    }
    while (bits.size() % 8)
        bits += '1';
    for (std::size_t i = 0; i < bits.size(); i += 8) {
        file += char(std::stoi(bits.substr(i, 8), nullptr, 2));
        if (file.back() == '\xFF')
            file += '\0';
    }
    return file + "\xFF\xD9"s;
}

CanvasPixel colorOfJPEG(const std::string& jpeg, const std::string& entries)
{
    return drawImage(imageEntries(8, 8, 8, "/Filter /DCTDecode " + entries), jpeg).pixel(8, 8);
}

TEST(PDFImageJPEG, DecodesGrayRGBAndCMYK)
{
    EXPECT_EQ(colorOfJPEG(jpegOf({51}), "/ColorSpace /DeviceGray"), rgba(51, 51, 51, 255));
    // Without colour transform.
    EXPECT_EQ(colorOfJPEG(jpegOf({51, 102, 153}, 0), "/ColorSpace /DeviceRGB"), rgba(51, 102, 153, 255));
    // Luminance and no chrominance.
    EXPECT_EQ(colorOfJPEG(jpegOf({51, 128, 128}), "/ColorSpace /DeviceRGB"), rgba(51, 51, 51, 255));
    EXPECT_EQ(colorOfJPEG(jpegOf({255, 0, 0, 0}, 0), "/ColorSpace /DeviceCMYK"), rgba(0, 159, 227, 255));
    // Stored inverted, as the file says.
    EXPECT_EQ(colorOfJPEG(jpegOf({0, 255, 255, 255}, 0), "/ColorSpace /DeviceCMYK /Decode [1 0 1 0 1 0 1 0]"),
        rgba(0, 159, 227, 255));
}

TEST(PDFImageJPEG, IsTransformedAsTheFileSays)
{
    const std::string rgb = "/ColorSpace /DeviceRGB ";
    EXPECT_EQ(colorOfJPEG(jpegOf({51, 102, 153}), rgb + "/DecodeParms << /ColorTransform 0 >>"),
        rgba(51, 102, 153, 255));
    EXPECT_NE(colorOfJPEG(jpegOf({51, 102, 153}), rgb + "/DecodeParms << /ColorTransform 1 >>"),
        rgba(51, 102, 153, 255));
    EXPECT_NE(colorOfJPEG(jpegOf({51, 102, 153}), rgb), rgba(51, 102, 153, 255));
    // The image's own marker decides.
    EXPECT_EQ(colorOfJPEG(jpegOf({51, 102, 153}, 0), rgb + "/DecodeParms << /ColorTransform 1 >>"),
        rgba(51, 102, 153, 255));
}

TEST(PDFImageJPEG, DecidesTheNumberOfComponentsAndTheSize)
{
    EXPECT_EQ(colorOfJPEG(jpegOf({51}), "/ColorSpace /DeviceRGB"), rgba(51, 51, 51, 255));
    EXPECT_EQ(colorOfJPEG(jpegOf({51}), ""), rgba(51, 51, 51, 255));
    const auto canvas = drawImage(
        imageEntries(1'000'000'000, 1, 8, "/Filter /DCTDecode /ColorSpace /DeviceGray"), jpegOf({51}));
    EXPECT_EQ(canvas.pixel(0, 0), rgba(51, 51, 51, 255));
    EXPECT_EQ(canvas.pixel(15, 15), rgba(51, 51, 51, 255));
}

TEST(PDFImageJPEG, IsDecodedAsFarAsItGoes)
{
    const std::string jpeg = jpegOf({51});
    EXPECT_EQ(colorOfJPEG(jpeg.substr(0, jpeg.size() - 2), "/ColorSpace /DeviceGray"), rgba(51, 51, 51, 255));
    for (std::size_t length = 0; length < jpeg.size(); length += 3)
        colorOfJPEG(jpeg.substr(0, length), "/ColorSpace /DeviceGray");
    // A header of 65,500 x 65,500 pixels.
    std::string huge = jpeg;
    const std::size_t frame = huge.find("\xFF\xC0"s);
    huge.replace(frame + 5, 4, "\xFF\xDC\xFF\xDC");
    EXPECT_TRUE(isNotDrawn(imageEntries(8, 8, 8, "/Filter /DCTDecode /ColorSpace /DeviceGray"), huge,
        "an image is not drawn (invalid DCTDecode)"));
}

} // namespace
