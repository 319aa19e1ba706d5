#include "HostilePDFs.h"
#include "support/PDFWriter.h"

namespace {

constexpr const char* catalogue = "<< /Type /Catalog /Pages 2 0 R >>";

/// A correct small file, to be damaged.
std::string soundFile()
{
    return pageWriter("1 0 0 rg 10 10 80 80 re f").file();
}

std::string treeThatHoldsItself()
{
    return PDFWriter().object(1, catalogue).object(2, "<< /Type /Pages /Kids [2 0 R] /Count 1 >>").file();
}

std::string treeOfTwoThatHoldEachOther()
{
    return PDFWriter()
        .object(1, catalogue)
        .object(2, "<< /Type /Pages /Kids [3 0 R 3 0 R] /Count 1 >>")
        .object(3, "<< /Type /Pages /Kids [2 0 R 2 0 R] /Count 1 /Parent 2 0 R >>")
        .file();
}

std::string parentsInACircle()
{
    return PDFWriter()
        .object(1, catalogue)
        .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
        .object(3, "<< /Type /Page /Parent 5 0 R /Contents 4 0 R >>")
        .stream(4, "0 0 9 9 re f")
        .object(5, "<< /Parent 6 0 R >>")
        .object(6, "<< /Parent 5 0 R >>")
        .file();
}

std::string onePageListed100000Times()
{
    return PDFWriter()
        .object(1, catalogue)
        .object(2, "<< /Type /Pages /Count 100000 /Kids [" + repeated("3 0 R ", 100'000) + "] >>")
        .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] >>")
        .file();
}

std::string pages100000()
{
    constexpr int count = 100'000;
    PDFWriter writer;
    writer.object(1, catalogue);
    std::string kids;
    for (int i = 0; i < count; ++i) {
        kids += std::to_string(3 + i) + " 0 R ";
        writer.object(3 + i, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] >>");
    }
    return writer.object(2, "<< /Type /Pages /Count 100000 /Kids [" + kids + "] >>").file();
}

std::string treeOf5000Levels()
{
    constexpr int last = 5'000;
    PDFWriter writer;
    writer.object(1, catalogue);
    for (int i = 2; i < last; ++i)
        writer.object(i, "<< /Type /Pages /Count 1 /Kids [" + std::to_string(i + 1) + " 0 R] >>");
    return writer.object(last, "<< /Type /Page /Parent 4999 0 R /MediaBox [0 0 9 9] >>").file();
}

/// Each level of the tree lists the next one ten times.
std::string treeThatMultiplies()
{
    PDFWriter writer;
    writer.object(1, catalogue);
    for (int i = 2; i < 14; ++i) {
        const auto kids = repeated(std::to_string(i + 1) + " 0 R ", 10);
        writer.object(i, "<< /Type /Pages /Count 10 /Kids [" + kids + "] >>");
    }
    return writer.object(14, "<< /Type /Page /MediaBox [0 0 9 9] >>").file();
}

std::string countThatLies()
{
    return PDFWriter()
        .object(1, catalogue)
        .object(2, "<< /Type /Pages /Kids [3 0 R null 99 0 R (x)] /Count 2147483647 >>")
        .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] /Count -5 >>")
        .file();
}

std::string boxesOfEveryWrongKind()
{
    PDFWriter writer;
    writer.object(1, catalogue);
    const char* const boxes[] = {"/MediaBox [0 0 0 0]", "/MediaBox [1 2]", "/MediaBox (text)",
        "/MediaBox [/a /b /c /d]", "/MediaBox [99999999999999999999 0 0 99999999999999999999]",
        "/MediaBox [0 0 9 9] /CropBox [50 50 60 60]", "/MediaBox [0 0 1e-30 1e-30]", "/MediaBox 99 0 R",
        "/MediaBox [0 0 9 9] /Rotate 1e300"};
    std::string kids;
    int number = 5;
    for (const char* box : boxes) {
        kids += std::to_string(number) + " 0 R ";
        writer.object(number++, "<< /Type /Page /Parent 2 0 R /Contents 4 0 R " + std::string(box) + " >>");
    }
    writer.stream(4, "0 0 9 9 re f");
    return writer.object(2, "<< /Type /Pages /Count 9 /Kids [" + kids + "] >>").file();
}

std::string contentsOf100000Streams()
{
    return PDFWriter()
        .object(1, catalogue)
        .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
        .object(3,
            "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 99 99] /Contents [" + repeated("4 0 R ", 100'000)
                + "] >>")
        .stream(4, repeated("0 0 9 9 re f ", 1'000))
        .file();
}

std::string contentsNestedInArrays()
{
    return PDFWriter()
        .object(1, catalogue)
        .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
        .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] /Contents 4 0 R >>")
        .object(4, "[4 0 R [4 0 R] 4 0 R]")
        .file();
}

std::string tableWithWrongOffsets()
{
    auto file = soundFile();
    auto at = file.find("xref\n0 5\n") + 9;
    for (int line = 0; line < 5; ++line, at += 20)
        file.replace(at, 10, "0000000017");
    return file;
}

std::string tableOfABillionEntries()
{
    auto file = soundFile();
    return file.replace(file.find("xref\n0 5"), 8, "xref\n0 1000000000");
}

std::string tableThatPointsAtItself()
{
    return "%PDF-1.7\n1 0 obj << /Type /Catalog >> endobj\nxref\n0 1\n0000000000 65535 f \n"
           "trailer << /Size 2 /Root 1 0 R /Prev 44 >>\nstartxref\n44\n%%EOF";
}

std::string objectsWithoutTable()
{
    std::string file = "%PDF-1.7\n";
    for (int i = 1; i < 100'000; ++i)
        file += std::to_string(i) + " 0 obj << /A " + std::to_string(i + 1) + " 0 R >> endobj\n";
    return file;
}

std::string lengthThatRefersToItself()
{
    return PDFWriter()
        .object(1, catalogue)
        .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
        .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] /Contents 4 0 R >>")
        .object(4, "<< /Length 4 0 R >>\nstream\n0 0 9 9 re f\nendstream")
        .file();
}

/// An object stream that holds itself and the pages.
std::string objectStreamThatHoldsItself()
{
    return PDFWriter()
        .object(1, catalogue)
        .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
        .stream(3, "3 0 2 0 << /Type /Page >>", "/Type /ObjStm /N 2 /First 8 /Extends 3 0 R")
        .file();
}

/// The standard handler with a password that nobody knows.
std::string encryptedFile()
{
    const std::string key = "<" + repeated("5a", 32) + ">";
    return pageWriter("0 0 9 9 re f")
        .object(9, "<< /Filter /Standard /V 1 /R 2 /Length 40 /P -4 /O " + key + " /U " + key + " >>")
        .trailer("/Encrypt 9 0 R /ID [<00> <00>]")
        .file();
}

std::string encryptedByAnUnknownHandler()
{
    return pageWriter("0 0 9 9 re f")
        .object(9, "<< /Filter /Secret /V 5 /R 6 /Length -1 /P 1e99 >>")
        .trailer("/Encrypt 9 0 R /ID [9 0 R]")
        .file();
}

/// The first `share` of a sound file.
std::string truncated(double share)
{
    const auto file = soundFile();
    return file.substr(0, static_cast<std::size_t>(static_cast<double>(file.size()) * share));
}

} // namespace

std::vector<HostilePDF> hostileStructures()
{
    return {
        {"empty", [] { return std::string(); }},
        {"header alone", [] { return std::string("%PDF-1.7\n"); }},
        {"random bytes", [] { return randomBytes(100'000); }},
        {"random bytes after a header", [] { return "%PDF-1.7\n" + randomBytes(100'000); }},
        {"truncated to a tenth", [] { return truncated(0.1); }},
        {"truncated to a half", [] { return truncated(0.5); }},
        {"truncated in its table", [] { return truncated(0.85); }},
        {"tree that holds itself", treeThatHoldsItself},
        {"tree of two that hold each other", treeOfTwoThatHoldEachOther},
        {"tree that multiplies", treeThatMultiplies},
        {"tree of 5,000 levels", treeOf5000Levels},
        {"parents in a circle", parentsInACircle},
        {"one page listed 100,000 times", onePageListed100000Times},
        {"100,000 pages", pages100000},
        {"count that lies", countThatLies},
        {"boxes of every wrong kind", boxesOfEveryWrongKind},
        {"contents of 100,000 streams", contentsOf100000Streams},
        {"contents nested in arrays", contentsNestedInArrays},
        {"table with wrong offsets", tableWithWrongOffsets},
        {"table of a billion entries", tableOfABillionEntries},
        {"table that points at itself", tableThatPointsAtItself},
        {"objects without a table", objectsWithoutTable},
        {"nested object", [] { return "%PDF-1.7\n1 0 obj " + repeated("[", 1'000'000); }},
        {"length that refers to itself", lengthThatRefersToItself},
        {"object stream that holds itself", objectStreamThatHoldsItself},
        {"encrypted", encryptedFile},
        {"encrypted by an unknown handler", encryptedByAnUnknownHandler},
    };
}
