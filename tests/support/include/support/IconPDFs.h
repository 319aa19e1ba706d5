#pragma once

#include <string>
#include <vector>

/// An icon of 24 x 24 points as a PDF file of one page.
struct IconPDF {
    std::string name;
    /// No two of its edges share a pixel: what is painted over what, before or after antialiasing, cannot
    /// differ from program to program.
    bool isSingleLayer;
    std::string file;
};

/// Icons that together use paths, strokes, gradients, transparency, masks, text, forms, tilings and images.
/// Their streams are not compressed.
std::vector<IconPDF> iconPDFs();
