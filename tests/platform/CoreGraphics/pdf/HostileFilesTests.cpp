#include "Foundation/testing/NSLogCapture.h"
#include "support/PDFPages.h"
#include "support/Repeated.h"

#include <gtest/gtest.h>

namespace {

/// Zeros, as the zlib format compresses them: some 160 to a byte.
std::string deflatedZeros(std::size_t count)
{
    std::string bytes = "\x78\x9c";
    unsigned bits = 0;
    unsigned used = 0;
    const auto put = [&](unsigned value, unsigned length) { // least significant bit first
        bits |= value << used;
        for (used += length; used >= 8; used -= 8) {
            bytes += static_cast<char>(bits & 255);
            bits >>= 8;
        }
    };
    put(0b011, 3);      // the last block, with fixed codes
    put(0b00001100, 8); // a zero: code 00110000, whose first bit is the most significant one
    for (std::size_t run = 0; run < count / 258; ++run) {
        put(0b10100011, 8); // 258 bytes: code 11000101
        put(0, 5);          // from one byte ago
    }
    put(0, 7); // end of the block
    put(0, 7);
    return bytes;
}

/// The message of the only line that drawing a page logs.
std::string messageOfDrawing(const RetainPtr<CGPDFDocument>& document)
{
    const NSLogCapture capture;
    drawPage(document, 1, 32, 32);
    const auto messages = capture.messages();
    const std::string start = "CGPDF: page 1 of a document: ";
    return messages.size() == 1 && messages[0].starts_with(start)
        ? messages[0].substr(start.size())
        : std::to_string(messages.size()) + " lines";
}

/// A file whose cross-references are a stream, with further entries in its dictionary.
std::string fileWithTableStream(const std::string& entries, const std::string& table)
{
    std::string bytes = "%PDF-1.5\n1 0 obj\n<< /Type /Catalog /Pages 2 0 R >>\nendobj\n"
                        "2 0 obj\n<< /Type /Pages /Kids [3 0 R] /Count 1 >>\nendobj\n"
                        "3 0 obj\n<< /Type /Page /Parent 2 0 R >>\nendobj\n";
    const std::string start = std::to_string(bytes.size());
    bytes += "4 0 obj\n" + pdfStream("/Type /XRef /Size 5 /W [1 2 1] /Root 1 0 R " + entries, table)
        + "\nendobj\n";
    return bytes + "startxref\n" + start + "\n%%EOF\n";
}

/// The entries of the table above.
std::string tableOf(const std::string& bytes)
{
    std::string table(4, '\0');
    for (const char* object : {"1 0 obj", "2 0 obj", "3 0 obj", "4 0 obj"}) {
        const std::size_t offset = bytes.find(object);
        table += {1, static_cast<char>(offset >> 8), static_cast<char>(offset & 255), 0};
    }
    return table;
}

TEST(HostilePDF, TableStreamsOfReasonableSizeAreRead)
{
    const std::string bytes =
        fileWithTableStream("", tableOf(fileWithTableStream("", std::string(20, '\0'))));
    const auto document = openPDF(bytes);
    EXPECT_EQ(CGPDFDocumentGetNumberOfPages(document), 1u);
}

TEST(HostilePDF, TableStreamsThatExpandAreRefused)
{
    // 400 MB
    EXPECT_FALSE(openPDF(fileWithTableStream("/Filter /FlateDecode", deflatedZeros(400 << 20))));
    const std::string table = tableOf(fileWithTableStream("", std::string(20, '\0')));
    EXPECT_FALSE(openPDF(fileWithTableStream("/Filter [/ASCIIHexDecode /ASCIIHexDecode]", table)));
    EXPECT_FALSE(openPDF(fileWithTableStream("/Filter /LZWDecode", table)));
}

TEST(HostilePDF, PredictorsWithHugeRowsAreRefused)
{
    const std::string predictor = "/Filter /FlateDecode /DecodeParms << /Predictor 12 ";
    EXPECT_FALSE(openPDF(fileWithTableStream(predictor + "/Columns 2000000000 >>", deflatedZeros(1000))));
    EXPECT_FALSE(openPDF(fileWithTableStream(predictor + "/C#6flumns 2000000000 >>", deflatedZeros(1000))));
    EXPECT_FALSE(
        openPDF(fileWithTableStream(predictor + "/Columns % \n 2000000000 >>", deflatedZeros(1000))));
    EXPECT_FALSE(openPDF(fileWithTableStream(predictor + "/Columns 5 0 R >>", deflatedZeros(1000))));
    EXPECT_FALSE(
        openPDF(fileWithTableStream(predictor + "/Columns 9 /Colors 999999 >>", deflatedZeros(1000))));
    EXPECT_TRUE(makePDF("", "", "", {pdfStream("/DecodeParms << /Columns 9 /Colors 3 >>", "")}));
    EXPECT_FALSE(makePDF("", "", "", {pdfStream("/DecodeParms << /Columns 9 /Colors 33 >>", "")}));
}

/// A file whose one page is the first object of a stream.
std::string fileWithObjectStream(const std::string& entries, const std::string& data)
{
    const std::string stream = pdfStream("/Type /ObjStm /N 1 /First 4 " + entries, data);
    std::string bytes = "%PDF-1.5\n1 0 obj\n<< /Type /Catalog /Pages 2 0 R >>\nendobj\n"
                        "2 0 obj\n<< /Type /Pages /Kids [3 0 R] /Count 1 >>\nendobj\n";
    const auto entry = [](int type, std::size_t value) {
        std::string result(1, static_cast<char>(type));
        for (int shift = 24; shift >= 0; shift -= 8)
            result += static_cast<char>(value >> shift & 255);
        return result + '\0';
    };
    std::string table =
        entry(0, 0) + entry(1, bytes.find("1 0 obj")) + entry(1, bytes.find("2 0 obj")) + entry(2, 5);
    table += entry(1, bytes.size() + stream.size() + 16) + entry(1, bytes.size());
    bytes += "5 0 obj\n" + stream + "\nendobj\n";
    const std::string start = std::to_string(bytes.size());
    bytes += "4 0 obj\n" + pdfStream("/Type /XRef /Size 6 /W [1 4 1] /Root 1 0 R", table)
        + "\nendobj\nstartxref\n" + start + "\n%%EOF\n";
    return bytes;
}

TEST(HostilePDF, ObjectStreamsThatExpandAreRefused)
{
    const std::string page = "3 0 << /Type /Page /Parent 2 0 R >>";
    EXPECT_TRUE(openPDF(fileWithObjectStream("", page)));
    EXPECT_FALSE(openPDF(fileWithObjectStream("/Filter /FlateDecode", deflatedZeros(400 << 20))));
    // Run lengths are refused whatever they expand to.
    const std::string lengths = static_cast<char>(page.size() - 1) + page;
    EXPECT_FALSE(openPDF(fileWithObjectStream("/Filter /RunLengthDecode", lengths)));
    EXPECT_FALSE(openPDF(fileWithObjectStream("/Filter [/RL]", lengths)));
}

TEST(HostilePDF, RepeatedNamesAreScreenedInLinearTime)
{
    for (const char* name : {"/Columns(", "/Columns[", "/Columns %", "/XRef ", "obj<</XRef", "/", "/#"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(openPDF(repeated(name, 1'000'000)));
    }
}

/// A file of one page with this stream.
RetainPtr<CGPDFDocument> pageWithContent(const std::string& entries, const std::string& data)
{
    return openPDF(pdfBytesOfObjects({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] >>",
        "<< /Type /Page /Parent 2 0 R /Contents 4 0 R >>", pdfStream(entries, data)}));
}

/// Encodes bytes as runs that are copied.
std::string copiedInRunLengths(const std::string& bytes)
{
    std::string result;
    for (std::size_t start = 0; start < bytes.size(); start += 128) {
        const std::string run = bytes.substr(start, 128);
        result += static_cast<char>(run.size() - 1) + run;
    }
    return result;
}

TEST(HostilePDF, ContentThatExpandsIsLeftOut)
{
    EXPECT_EQ(messageOfDrawing(pageWithContent("/Filter /FlateDecode", deflatedZeros(33 << 20))),
        "the rest of the page is left out: too many decoded bytes");
    EXPECT_EQ(messageOfDrawing(pageWithContent("/Filter /FlateDecode", deflatedZeros(31 << 20))), "0 lines");
}

TEST(HostilePDF, RunLengthsThatExpandAreLeftOut)
{
    const auto message = [](const std::string& filters, const std::string& data) {
        return messageOfDrawing(pageWithContent("/Filter [" + filters + "]", data));
    };
    const std::string tooMuch = "the rest of the page is left out: too many decoded bytes";
    const std::string spaces = "\x81 "; // 128 of them
    EXPECT_EQ(message("/RL", repeated(spaces, (33 << 20) / 128)), tooMuch);
    std::string content = repeated(spaces, (31 << 20) / 128);
    EXPECT_EQ(message("/RL", content), "0 lines");
    // All filters together have a limit, too.
    content = repeated(std::string(1, '\x7F') + std::string(128, ' '), (31 << 20) / 128);
    EXPECT_EQ(message("/RL", content), "0 lines");
    std::string filters = "/RL";
    for (const char* expected : {"0 lines", tooMuch.c_str()}) {
        content = copiedInRunLengths(content);
        filters += " /RL";
        EXPECT_EQ(message(filters, content), expected);
    }
}

TEST(HostilePDF, EndlessContentEndsAtItsLimits)
{
    EXPECT_EQ(messageOfDrawing(makePDF(repeated("q Q ", 250'001))),
        "the rest of the page is left out: too many operators");
    EXPECT_EQ(messageOfDrawing(makePDF(repeated("0 0 m 1 1 l 2 2 l 3 3 l 4 4 l ", 90'000))), "0 lines");
    EXPECT_EQ(messageOfDrawing(makePDF("0 0 m " + repeated("1 1 2 2 3 3 c ", 333'334))),
        "the rest of the page is left out: too many points");
    EXPECT_EQ(messageOfDrawing(makePDF(repeated("0 0 1 1 re f ", 100'001))),
        "the rest of the page is left out: too many items");
    EXPECT_EQ(messageOfDrawing(makePDF(repeated("[", 40))),
        "the rest of the page is left out: too many nested arrays");
}

TEST(HostilePDF, WhatComesBeforeALimitIsDrawn)
{
    const NSLogCapture capture;
    const auto document = makePDF("0 0 1 1 re f " + repeated("q Q ", 250'001) + "1 0 1 1 re f");
    EXPECT_COVERAGE(drawPage(document, 1, 2, 1), "#.");
}

TEST(HostilePDF, CostlyStrokesEndTheDraw)
{
    // Lines from side to side, each of which crosses all others.
    std::string content = "0.1 w 0 0 m ";
    for (int line = 0; line < 60'000; ++line)
        content += std::to_string(line % 2 * 32) + " " + std::to_string(line * 7919 % 320 / 10.0) + " l ";
    EXPECT_EQ(messageOfDrawing(makePDF(content + "S")),
        "the rest of the page is left out: it takes too long to draw");
}

TEST(HostilePDF, ManyOperandsAreAccepted)
{
    EXPECT_COVERAGE(drawPage(makePDF(repeated("9 ", 100'000) + "n 0 0 1 1 re f"), 1, 2, 1), "#.");
}

TEST(HostilePDF, UnterminatedContentIsDrawn)
{
    EXPECT_COVERAGE(drawPage(makePDF("0 0 1 1 re f q q 1 0 1 1 re W n (abc"), 1, 2, 1), "#.");
    EXPECT_COVERAGE(drawPage(makePDF("0 0 1 1 re f [1 2 << /A"), 1, 2, 1), "#.");
}

} // namespace
