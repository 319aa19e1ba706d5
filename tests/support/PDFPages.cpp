#include "support/PDFPages.h"

#include <Foundation/NSData.h>

#include <array>
#include <cstdio>

PDFObjectText pdfStream(std::string_view entries, std::string_view data)
{
    std::string result = "<< /Length " + std::to_string(data.size()) + " ";
    result += entries;
    result += " >>\nstream\n";
    result += data;
    result += "\nendstream";
    return result;
}

std::string pdfBytesOfObjects(const std::vector<PDFObjectText>& objects, std::string_view trailerEntries)
{
    std::string bytes = "%PDF-1.7\n";
    std::string table = "0000000000 65535 f \n";
    for (std::size_t index = 0; index < objects.size(); ++index) {
        std::array<char, 32> entry{};
        std::snprintf(entry.data(), entry.size(), "%010zu 00000 %c \n",
            objects[index].empty() ? 0 : bytes.size(), objects[index].empty() ? 'f' : 'n');
        table += entry.data();
        if (!objects[index].empty())
            bytes += std::to_string(index + 1) + " 0 obj\n" + objects[index] + "\nendobj\n";
    }
    const std::size_t start = bytes.size();
    const std::string size = std::to_string(objects.size() + 1);
    bytes += "xref\n0 " + size + "\n" + table + "trailer\n<< /Size " + size + " /Root 1 0 R ";
    bytes += trailerEntries;
    bytes += " >>\nstartxref\n" + std::to_string(start) + "\n%%EOF\n";
    return bytes;
}

std::string pdfBytes(std::string_view content, std::string_view resources, std::string_view pageEntries,
    const std::vector<PDFObjectText>& objects)
{
    std::string page = "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Resources << ";
    page += resources;
    page += " >> ";
    page += pageEntries;
    page += " >>";
    std::vector<PDFObjectText> all{"<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>", page, pdfStream("", content)};
    all.resize(kFirstPDFObject - 1);
    all.insert(all.end(), objects.begin(), objects.end());
    return pdfBytesOfObjects(all);
}

RetainPtr<CGPDFDocument> openPDF(std::string_view bytes)
{
    const auto data = NSData::dataWithBytes(bytes.data(), bytes.size());
    const auto provider = adopt(CGDataProviderCreateWithCFData(data));
    return adopt(CGPDFDocumentCreateWithProvider(provider));
}

RetainPtr<CGPDFDocument> makePDF(std::string_view content, std::string_view resources,
    std::string_view pageEntries, const std::vector<PDFObjectText>& objects)
{
    return openPDF(pdfBytes(content, resources, pageEntries, objects));
}

Canvas drawPage(
    const RetainPtr<CGPDFDocument>& document, std::size_t number, int width, int height, double scale)
{
    Canvas canvas(int(width * scale), int(height * scale));
    CGContextScaleCTM(canvas.context(), scale, scale);
    CGContextDrawPDFPage(canvas.context(), CGPDFDocumentGetPage(document, number));
    return canvas;
}

Canvas drawContent(
    std::string_view content, std::string_view resources, const std::vector<PDFObjectText>& objects)
{
    return drawPage(makePDF(content, resources, "/MediaBox [0 0 16 16]", objects), 1, 16, 16);
}
