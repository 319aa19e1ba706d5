#pragma once

#include "CoreGraphics/pdf/DisplayList.h"

#include <CoreGraphics/CGContext.h>

/// Draws display lists into a context, through its public functions. Each draw has a budget; where it is
/// spent, the rest is left out.
class DisplayListPlayer {
public:
    /// The context's user space is page space. Its graphics state changes: the caller saves and restores it.
    explicit DisplayListPlayer(CGContextRef context);

    void play(const DisplayList& list);
    /// True once something was left out.
    bool isExhausted() const { return _workLeft < 0; }

private:
    void draw(const SaveItem& item);
    void draw(const RestoreItem& item);
    void draw(const ClipItem& item);
    void draw(const PathItem& item);
    void draw(const ShadeItem& item);
    void draw(const ImageItem& item);
    void draw(const GroupItem& item);
    void draw(const TileItem& item);
    template <class Item> void draw(const std::unique_ptr<const Item>& item) { draw(*item); }

    /// Sets the blend mode and the soft mask of an item in the graphics state. The alpha is the caller's
    /// part.
    void setCompositing(const PDFCompositing& compositing);
    void clipToSoftMask(const PDFSoftMask& mask);
    /// The mask rendered over `pixels`, a rectangle of whole pixels in base space. Null without memory.
    RetainPtr<CGImage> renderSoftMask(const PDFSoftMask& mask, CGRect pixels);
    /// Makes the shape the current path, a stroke as its outline, in page space.
    void addToPath(const PDFShape& shape);
    /// Intersects the clip with a shape; one without a path does not change it.
    void clipTo(const PDFShape& shape);
    /// Saves the state and prepares it for filling `shape` with what is drawn in another space; one without a
    /// path is all of the clip. Returns false, with nothing saved, once the budget is spent.
    bool beginPattern(
        const PDFCompositing& compositing, const PDFShape& shape, const CGAffineTransform& pageFromPattern);
    void endPattern();
    void clipChanged();
    /// Sets the alpha of an item whose paint has none.
    void setAlpha(float alpha);

    /// Draws the copies of a tiling's cell that reach into a box of pattern space. `context`, which may be
    /// null, has that as its user space.
    void drawCells(const TileItem& item, CGContextRef context, CGRect box);

    /// The bounds of what a shape paints, in page space.
    static CGRect paintedBox(const PDFShape& shape);
    /// The part of a box in page space that the clip may leave visible, in device space. Null when nothing is
    /// visible.
    CGRect visible(CGRect box) const;
    /// Takes the work of an item that paints `box` and draws `shape`, which may be null, from the budget.
    void spend(CGRect box, const PDFShape* shape);
    double crossingWork(const PDFShape& shape, CGRect box, CGRect visibleBox) const;
    /// The pixels of a unit of the line attributes of a stroke.
    double lineScale(const PDFShape& shape) const;
    /// Whether a stroke has no dashes, or such that it is drawn without them.
    bool isSolid(const PDFShape& shape) const;
    /// The rows of pixels that the dashes of a stroke cross, added up, if they are many in each row;
    /// otherwise 0.
    double crowdedDashRows(const PDFShape& shape) const;
    /// Sets the line attributes for a context whose user space is the path's space.
    void setLineAttributes(const PDFShape& shape);

    /// A soft mask that several items have in common is rendered once.
    struct RenderedMask {
        const PDFSoftMask* mask = nullptr;
        CGRect pixels{};
        RetainPtr<CGImage> image;
    };

    CGContextRef _context;
    CGAffineTransform _deviceFromPage;
    double _scale;  ///< by which page space is enlarged, on average of all directions
    CGRect _clip{}; ///< bounds of the clip in device space
    double _workLeft = 0;
    double _alpha;          ///< of the context before any item
    std::size_t _saves = 0; ///< of the list that is played
    RenderedMask _renderedMask;
};
