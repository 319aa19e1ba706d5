#pragma once

#include <AppKit/NSView.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

/// Finds the subviews of a view at a point or in a rectangle, in time that depends on how many lie there, not
/// on how many there are.
///
/// A hierarchy of grids: the cells of each level are twice as large as those of the level below. A view
/// belongs to the lowest level whose cells are larger than its frame, and there to the cell of the frame's
/// corner with the least x and y; so it reaches no farther than into the next cell. Cells are hashed, and
/// only those with views take memory, wherever they are.
struct NSView::SubviewIndex {
    /// Of the subviews that `view` has. The index belongs to the view.
    explicit SubviewIndex(const NSView& view);
    SubviewIndex(const SubviewIndex&) = delete;
    SubviewIndex& operator=(const SubviewIndex&) = delete;

    /// To be called after a view was inserted among the subviews.
    void add(NSView& subview);
    /// To be called when a view is removed from the subviews.
    void remove(NSView& subview);
    /// To be called after the frame of a subview has changed from `old`.
    void move(NSView& subview, NSRect old);

    /// Views with numbers that increase from the bottom view to the top one.
    using Found = std::vector<std::pair<std::size_t, NSView*>>;
    /// Appends the subviews that touch `rect`, from bottom to top, except those whose number is below
    /// `first`. Hidden views are included, and views may be that miss the rectangle by a rounding error.
    void find(NSRect rect, std::size_t first, Found& found) const;
    /// Calls `visit` with each of them, also when it changes the tree: those that are above the view that was
    /// visited last are then searched anew. `found` is a stack of results, and is afterwards as before.
    template <std::invocable<NSView&> Visit> void forEach(NSRect rect, Found& found, Visit visit) const;
    /// What the topmost subview that is hit returns from its hit test; null if none is.
    NSView* hitTest(NSPoint point);

private:
    struct Entry {
        NSRect frame;
        NSView* view;
    };
    using Cell = std::vector<Entry>;
    using Level = std::unordered_map<std::uint64_t, Cell>;

    void insert(NSView& subview);
    void erase(const NSView& subview, NSRect frame);

    const NSView& _view;
    std::map<int, Level> _levels;          ///< by the binary logarithm of the cell's side
    std::vector<NSView*> _hitTesters;      ///< override `hitTest`, and may be hit outside of their frames
    std::unordered_set<NSView*> _newViews; ///< may belong to `_hitTesters`
    std::size_t _version = 0;              ///< another one after each change of what `find` may return
};

template <std::invocable<NSView&> Visit>
void NSView::SubviewIndex::forEach(NSRect rect, Found& found, Visit visit) const
{
    const std::size_t start = found.size();
    find(rect, 0, found);
    std::size_t version = _version;
    for (std::size_t next = start; next < found.size();) {
        const RetainPtr<NSView> view = found[next].second;
        std::size_t order = found[next++].first;
        visit(*view);
        if (version == _version)
            continue;
        version = _version;
        if (view->_superview == &_view)
            order = view->_order;
        found.resize(start);
        find(rect, order + 1, found);
        next = start;
    }
    found.resize(start);
}
