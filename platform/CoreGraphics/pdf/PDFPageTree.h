#pragma once

#include "CoreGraphics/pdf/PDFFile.h"

/// The pages below the root of a page tree, in order. Each node counts once: what occurs again, below itself
/// or elsewhere, is left out, like pages beyond the limits.
std::vector<PDFPageProperties> readPageTree(const PDFObject& root);
