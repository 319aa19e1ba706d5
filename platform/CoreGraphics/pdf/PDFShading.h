#pragma once

#include "CoreGraphics/pdf/PDFRGB.h"

#include <CoreGraphics/CGContext.h>

#include <memory>
#include <optional>

class PDFObject;
class PDFRecording;

/// A smooth transition between colours. Immutable, and safe on any thread.
///
/// Axial and radial shadings (types 2 and 3) are gradients. Those of functions (1), triangles (4, 5) and
/// patches (6, 7) are computed for the centre of each device pixel; the outlines of meshes are not
/// antialiased.
class PDFShading {
public:
    /// The shading of a dictionary or stream. Null when it is invalid. Throws PDFLimitExceeded.
    static std::shared_ptr<const PDFShading> make(
        const PDFObject& object, const PDFObject& resources, PDFRecording& recording);

    PDFShading(const PDFShading&) = delete;
    PDFShading& operator=(const PDFShading&) = delete;
    virtual ~PDFShading() = default;

    /// Paints the context's clip; user space is the shading's. The shading's background counts in patterns
    /// only. Returns the work that it took; stops when that exceeds `workLeft`.
    double draw(CGContextRef context, bool isPattern, double workLeft) const;

protected:
    PDFShading() = default;

private:
    /// Paints the clip without background and box.
    virtual double paint(CGContextRef context, double workLeft) const = 0;

    std::optional<CGRect> _box;
    std::optional<PDFRGB> _background;
};
