#pragma once

#include <CoreGraphics/CGContext.h>
#include <CoreGraphics/CGPDFPage.h>

#include <cstddef>

/// The pages of an open PDF file, by their indices from 0: what Core Graphics calls of the module that reads
/// PDF files (pdf/). Safe on any thread.
class PDFPages {
public:
    virtual ~PDFPages() = default;

    /// At least 1.
    virtual std::size_t count() const = 0;
    /// CGRectNull for an unknown box.
    virtual CGRect box(std::size_t index, CGPDFBox box) const = 0;
    /// Clockwise: 0, 90, 180 or 270 degrees.
    virtual int rotation(std::size_t index) const = 0;
    /// Draws the page in page space, which is the context's user space. Leaves the graphics state as it was.
    /// A page is recorded when it is first drawn.
    virtual void draw(std::size_t index, CGContextRef context) = 0;
};
