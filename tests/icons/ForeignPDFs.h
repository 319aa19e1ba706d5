#pragma once

#include <optional>
#include <string>
#include <vector>

/// A PDF file that another program wrote.
struct ForeignPDF {
    std::string name;
    std::string path;
};

/// Files written by cairo, rsvg-convert, qpdf and Ghostscript into a folder. Throws when one of the programs
/// fails.
std::vector<ForeignPDF> writeForeignPDFs(const std::string& folder);
/// A file written by pdfTeX. Throws when that fails.
ForeignPDF writeTeXPDF(const std::string& folder);
/// A file written by LibreOffice. Nothing where that is not installed; throws when it fails.
std::optional<ForeignPDF> writeLibreOfficePDF(const std::string& folder);
