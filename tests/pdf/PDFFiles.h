#pragma once

#include "support/PDFPages.h"
#include "support/TemporaryFolder.h"

#include <KorvidAppKit/ZRPDF.h>

#include <Foundation/NSURL.h>

#include <string>
#include <vector>

/// One page of a file: its content stream, and entries of its dictionary.
struct PDFPageText {
    std::string content;
    std::string entries = "/MediaBox [0 0 16 16]";
};

/// The bytes of a PDF file of those pages. `inherited` are entries of the pages' parent.
inline std::string pdfFile(const std::vector<PDFPageText>& pages, const std::string& inherited = "")
{
    std::string kids;
    std::vector<PDFObjectText> objects{"<< /Type /Catalog /Pages 2 0 R >>", ""};
    for (const PDFPageText& page : pages) {
        const std::size_t number = objects.size() + 1;
        kids += std::to_string(number) + " 0 R ";
        objects.push_back("<< /Type /Page /Parent 2 0 R /Contents " + std::to_string(number + 1) + " 0 R "
            + page.entries + " >>");
        objects.push_back(pdfStream("", page.content));
    }
    objects[1] = "<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(pages.size()) + " "
        + inherited + " >>";
    return pdfBytesOfObjects(objects);
}

/// The document in a file of those bytes, which is removed again. Null when it is not a PDF file.
inline RetainPtr<ZRPDF> loadPDF(const std::string& bytes)
{
    const TemporaryFolder folder;
    return ZRPDF::initWithURL(NSURL::fileURLWithPath(NSString(folder.write("test.pdf", bytes))));
}

/// A document of one page.
inline RetainPtr<ZRPDF> loadPage(const std::string& content, const std::string& entries)
{
    return loadPDF(pdfFile({{content, entries}}));
}

/// A page of 100 x 200 points, in quarters: red and green below, blue and opaque black above.
inline RetainPtr<ZRPDF> loadQuarters()
{
    return loadPage("1 0 0 rg 0 0 50 100 re f 0 1 0 rg 50 0 50 100 re f "
                    "0 0 1 rg 0 100 50 100 re f 0 g 50 100 50 100 re f",
        "/MediaBox [0 0 100 200]");
}

/// A page of 10 x 10 points, of which the lower left quarter is blue.
inline RetainPtr<ZRPDF> loadCorner()
{
    return loadPage("0 0 1 rg 0 0 5 5 re f", "/MediaBox [0 0 10 10]");
}
