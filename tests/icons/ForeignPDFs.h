#pragma once

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
