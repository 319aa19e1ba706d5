#pragma once

#include "CoreGraphics/pdf/PDFRGB.h"

#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGBlendMode.h>
#include <CoreGraphics/CGImage.h>
#include <CoreGraphics/CGPath.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

class PDFShading;
struct DisplayList;

/// A mask rendered from a list of items: their luminosity on a backdrop, or their alpha.
struct PDFSoftMask {
    std::shared_ptr<const DisplayList> list; ///< in page space
    bool isLuminosity = false;
    PDFRGB backdrop;                          ///< below a luminosity mask, everywhere
    std::array<std::uint8_t, 256> transfer{}; ///< coverage by luminosity or alpha
};

/// How a line is drawn. Lengths are in the space of the path.
struct PDFStrokeStyle {
    double width = 1; ///< 0 is one device pixel
    double miterLimit = 10;
    double dashPhase = 0;
    std::vector<CGFloat> dashes; ///< empty for a solid line
    CGLineCap cap = kCGLineCapButt;
    CGLineJoin join = kCGLineJoinMiter;
    /// From the path's space to page space. Nothing where that is the path's space already; only pens that
    /// are not circles in page space need it.
    std::optional<CGAffineTransform> pageFromPath;
};

/// A filled or stroked path.
struct PDFShape {
    RetainPtr<const CGPath> path;                 ///< in page space, unless `stroke` has a transform
    std::shared_ptr<const PDFStrokeStyle> stroke; ///< null for a fill
    float length = 0; ///< of the control polygon in page space: what drawing costs
    bool isEvenOdd = false;
    bool hasCurves = false;
};

/// How an item's paint joins what lies below.
struct PDFCompositing {
    float alpha = 1;
    CGBlendMode blendMode = kCGBlendModeNormal;
    std::shared_ptr<const PDFSoftMask> softMask; ///< null for none

    bool isPlain() const { return alpha == 1 && blendMode == kCGBlendModeNormal && !softMask; }
};

// The items. Boxes and paths are in page space.

/// Saves the clip.
struct SaveItem { };
/// Restores the clip saved last.
struct RestoreItem { };
/// Intersects the clip with a filled path; an empty path leaves nothing.
struct ClipItem {
    PDFShape shape;
};
/// Paints a filled or stroked path in one colour.
struct PathItem {
    PDFShape shape;
    PDFRGB color;
    PDFCompositing compositing;
};
/// Paints the clip with a shading.
struct ShadeItem {
    PDFShape shape; ///< what a shading pattern paints; without a path, the whole clip
    PDFCompositing compositing;
    std::shared_ptr<const PDFShading> shading;
    CGAffineTransform pageFromShading = CGAffineTransformIdentity;
    bool isPattern = false;
};
/// Draws an image, or paints a colour through a stencil, in the unit square.
struct ImageItem {
    PDFCompositing compositing;
    RetainPtr<CGImage> image;
    CGAffineTransform pageFromUnitSquare = CGAffineTransformIdentity;
    PDFRGB color; ///< of a stencil
    bool isStencil = false;
    bool interpolates = false;
};
/// Draws a list as one object.
struct GroupItem {
    PDFCompositing compositing;
    std::shared_ptr<const DisplayList> list;
    CGRect box{}; ///< contains all that the group paints
};
/// Paints a shape with copies of a cell.
struct TileItem {
    PDFShape shape;
    PDFCompositing compositing;
    std::shared_ptr<const DisplayList> cell;
    CGAffineTransform pageFromPattern = CGAffineTransformIdentity;
    CGRect cellBox{}; ///< in pattern space, like the steps; a copy is clipped to it
    double xStep = 0; ///< not 0
    double yStep = 0;
};

/// Rare items lie apart, to keep the common ones small.
using DisplayItem = std::variant<SaveItem, RestoreItem, ClipItem, PathItem, std::unique_ptr<const ShadeItem>,
    std::unique_ptr<const ImageItem>, std::unique_ptr<const GroupItem>, std::unique_ptr<const TileItem>>;

/// What a page or a part of it paints, in order. Immutable once recorded, so that several threads may draw it
/// at a time. A restore without a save is ignored; what is still saved at the end is restored there.
struct DisplayList {
    std::vector<DisplayItem> items;
    bool blends = false; ///< true when an item has a blend mode other than normal
};
