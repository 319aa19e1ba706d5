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

    /// The part of a box in page space that the clip may leave visible, in device space. Null when nothing is
    /// visible.
    CGRect visible(CGRect box);
    /// Takes the work of an item that paints `box` and draws `shape`, which may be null, from the budget.
    void spend(CGRect box, const PDFShape* shape);
    double crossingWork(const PDFShape& shape, CGRect box, CGRect visibleBox) const;
    void strokeCurrentPath(const PDFShape& shape);

    CGContextRef _context;
    CGAffineTransform _deviceFromPage;
    double _scale; ///< by which page space is enlarged, on average of all directions
    CGRect _clip;  ///< bounds of the clip in device space
    double _workLeft;
    std::size_t _saves = 0; ///< of the list that is played
};
