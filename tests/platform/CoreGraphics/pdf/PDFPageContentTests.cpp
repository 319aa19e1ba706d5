#include "Foundation/testing/NSLogCapture.h"
#include "support/PDFPages.h"

#include <gtest/gtest.h>

namespace {

/// The page of a file whose page dictionary has these entries, and its parent those.
Canvas drawPageWith(const std::string& entries, const std::vector<PDFObjectText>& streams,
    const std::string& parentEntries = "")
{
    std::vector<PDFObjectText> objects{"<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 " + parentEntries + " >>",
        "<< /Type /Page /Parent 2 0 R " + entries + " >>"};
    objects.insert(objects.end(), streams.begin(), streams.end());
    return drawPage(openPDF(pdfBytesOfObjects(objects)), 1, 4, 1);
}

/// Up to 255 bytes in the zlib format, as they are.
std::string storedDeflate(const std::string& bytes)
{
    unsigned low = 1;
    unsigned high = 0;
    for (const unsigned char byte : bytes) {
        low = (low + byte) % 65521;
        high = (high + low) % 65521;
    }
    const auto size = static_cast<char>(bytes.size());
    std::string result = "\x78\x01\x01";
    result += {size, '\0', static_cast<char>(~size), '\xFF'};
    result += bytes;
    for (const unsigned sum : {high, low})
        result += {static_cast<char>(sum >> 8), static_cast<char>(sum & 255)};
    return result;
}

/// Each byte less the one before.
std::string differencesOf(const std::string& bytes)
{
    std::string result = bytes;
    for (std::size_t index = 1; index < bytes.size(); ++index)
        result[index] = static_cast<char>(bytes[index] - bytes[index - 1]);
    return result;
}

TEST(PDFPageContent, MayBeSplitBetweenTokens)
{
    EXPECT_COVERAGE(
        drawPageWith("/Contents [4 0 R 5 0 R]", {pdfStream("", "q 0 0 1"), pdfStream("", "1 re f")}), "#...");
    EXPECT_COVERAGE(drawPageWith("/Contents [4 0 R 5 0 R]",
                        {pdfStream("", "q 1 0 0 1 2 0 cm"), pdfStream("", "0 0 1 1 re f Q 0 0 1 1 re f")}),
        "#.#.");
}

TEST(PDFPageContent, MayBeMissingOrDamaged)
{
    const NSLogCapture capture;
    EXPECT_COVERAGE(drawPageWith("", {}), "....");
    EXPECT_COVERAGE(drawPageWith("/Contents 9 0 R", {}), "....");
    EXPECT_COVERAGE(drawPageWith("/Contents [/A 4 0 R null]", {pdfStream("", "0 0 1 1 re f")}), "#...");
    EXPECT_TRUE(capture.messages().empty());
    EXPECT_COVERAGE(drawPageWith("/Contents 4 0 R", {pdfStream("/Filter /Unknown", "0 0 1 1 re f")}), "....");
    const std::vector<std::string> expected{"CGPDF: page 1 of a document: a stream cannot be decoded"};
    EXPECT_EQ(capture.messages(), expected);
}

TEST(PDFPageContent, DecodesFilters)
{
    EXPECT_COVERAGE(drawPageWith("/Contents 4 0 R",
                        {pdfStream("/Filter /ASCIIHexDecode", "30203020312031207265206620>")}),
        "#...");
    // "0 0 1 1 re f" in hexadecimal, of which the run-length filter copies 26 characters.
    EXPECT_COVERAGE(drawPageWith("/Contents 4 0 R",
                        {pdfStream("/Filter [/RunLengthDecode /ASCIIHexDecode]",
                            std::string("\x19") + "30203020312031207265206620" + "\x80")}),
        "#...");
}

TEST(PDFPageContent, DecodesRunLengthsAmongOtherFilters)
{
    const auto draw = [](const std::string& entries, const std::string& bytes) {
        return drawPageWith("/Contents 4 0 R", {pdfStream(entries, bytes)});
    };
    // "0 " twice, as two copied characters each, a space 3 times (257 - 254), and 8 copied characters.
    const std::string encoded = std::string("\x01") + "0 " + "\x01" + "0 " + "\xFE " + "\x07" + "1 1 re f";
    EXPECT_COVERAGE(draw("/Filter /RL", encoded + "\x80"), "#...");
    EXPECT_COVERAGE(draw("/Filter [/RunLengthDecode]", encoded), "#...");
    EXPECT_COVERAGE(draw("/Filter /RL", encoded + "\x80\x07 4 0 re f"), "#...") << "what follows the end";
    EXPECT_COVERAGE(draw("/Filter [/AHx /RL]", "01302001302 0FE20 0731203120726520 66 80>"), "#...");
    EXPECT_COVERAGE(draw("/Filter [/RL /RL]", std::string("\x12") + encoded + "\x80"), "#...");
    // 24 copied bytes, which are deflated differences between neighbours.
    const std::string differences = "\x17" + storedDeflate("\x01" + differencesOf("0 0 1 1 re f"));
    const std::string parms = "<< /Predictor 15 /Columns 12 >>";
    EXPECT_COVERAGE(
        draw("/Filter [/RL /FlateDecode] /DecodeParms [null " + parms + "]", differences), "#...");
    EXPECT_COVERAGE(draw("/Filter [/RL /FlateDecode] /DecodeParms " + parms, differences), "#...");
    const NSLogCapture capture; // of what stands there without a predictor
    EXPECT_COVERAGE(
        draw("/Filter [/RL /FlateDecode] /DecodeParms [" + parms + " null]", differences), "....");
}

TEST(PDFPageContent, UsesRunLengthsUpToTheirDamage)
{
    const auto draw = [](const std::string& bytes) {
        return drawPageWith("/Contents 4 0 R", {pdfStream("/Filter /RL", bytes)});
    };
    EXPECT_COVERAGE(draw(std::string("\x7F") + "0 0 1 1 re f"), "#...") << "fewer bytes than the length says";
    EXPECT_COVERAGE(draw(std::string("\x0B") + "0 0 1 1 re f" + "\x81"), "#...") << "nothing to repeat";
}

TEST(PDFPageContent, UsesWhatWasDecodedBeforeAnError)
{
    EXPECT_COVERAGE(drawPageWith("/Contents 4 0 R",
                        {pdfStream("/Filter /ASCIIHexDecode", "302030203120312072652066200a!!")}),
        "#...");
}

TEST(PDFPageContent, InheritsResources)
{
    const std::string half = "/Resources << /ExtGState << /A << /ca 0.5 >> >> >>";
    const std::vector<PDFObjectText> content{pdfStream("", "/A gs 0 0 1 1 re f")};
    EXPECT_COVERAGE(drawPageWith("/Contents 4 0 R", content, half), "+...");
    EXPECT_COVERAGE(drawPageWith("/Contents 4 0 R /Resources << >>", content, half), "#...");
}

TEST(PDFPageContent, IgnoresTheUserUnit)
{
    EXPECT_COVERAGE(drawPageWith("/UserUnit 2 /Contents 4 0 R", {pdfStream("", "0 0 1 1 re f")}), "#...");
}

} // namespace
