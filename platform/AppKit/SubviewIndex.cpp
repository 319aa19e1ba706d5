#include "SubviewIndex.h"

#include "SubviewPlaces.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kLowestLevel = 4;
constexpr int kHighestLevel = 30; ///< contains all views that are larger, too

/// The range of cells whose views may touch a rectangle.
struct CellRange {
    std::int64_t minX, minY, maxX, maxY;

    double count() const { return double(maxX - minX + 1) * double(maxY - minY + 1); }
};

int levelOf(NSRect frame)
{
    const CGFloat side = std::max(frame.size.width, frame.size.height);
    if (!(side >= 1 << kLowestLevel))
        return kLowestLevel;
    return std::min(std::ilogb(side) + 1, kHighestLevel);
}

/// The number of the cell with a coordinate. Those that are too far away share the last cell.
std::int64_t cellAt(CGFloat coordinate, int level)
{
    constexpr CGFloat kFarthest = 1 << 30;
    return std::int64_t(std::clamp(std::floor(std::ldexp(coordinate, -level)), -kFarthest, kFarthest));
}

std::uint64_t keyOfCell(std::int64_t x, std::int64_t y)
{
    return std::uint64_t(std::uint32_t(x)) << 32 | std::uint32_t(y);
}

std::uint64_t keyOfFrame(NSRect frame, int level)
{
    return keyOfCell(cellAt(NSMinX(frame), level), cellAt(NSMinY(frame), level));
}

CellRange cellsAround(NSRect rect, int level)
{
    return {cellAt(NSMinX(rect), level) - 1, cellAt(NSMinY(rect), level) - 1, cellAt(NSMaxX(rect), level),
        cellAt(NSMaxY(rect), level)};
}

/// Calls `visit` with the views of one level that may touch a rectangle.
template <class Level, class Visit> void forEachIn(const Level& cells, int level, NSRect rect, Visit visit)
{
    const auto visitCell = [&](const auto& cell) {
        for (const auto& entry : cell) {
            if (touch(entry.frame, rect))
                visit(entry.view);
        }
    };
    const CellRange range = cellsAround(rect, level);
    if (level == kHighestLevel || range.count() > double(cells.size())) {
        for (const auto& [key, cell] : cells)
            visitCell(cell);
        return;
    }
    for (std::int64_t y = range.minY; y <= range.maxY; ++y) {
        for (std::int64_t x = range.minX; x <= range.maxX; ++x) {
            const auto cell = cells.find(keyOfCell(x, y));
            if (cell != cells.end())
                visitCell(cell->second);
        }
    }
}

} // namespace

NSView::SubviewIndex::SubviewIndex(const NSView& view)
    : _view(view)
{
    std::size_t order = 0;
    for (const auto& subview : view._subviews) {
        subview->_order = order++;
        insert(*subview);
        _newViews.insert(subview);
    }
}

void NSView::SubviewIndex::insert(NSView& subview)
{
    const int level = levelOf(subview._frame);
    _levels[level][keyOfFrame(subview._frame, level)].push_back({subview._frame, &subview});
    ++_version;
}

void NSView::SubviewIndex::erase(const NSView& subview, NSRect frame)
{
    const auto level = _levels.find(levelOf(frame));
    const auto cell = level->second.find(keyOfFrame(frame, level->first));
    Cell& entries = cell->second;
    const auto entry = std::find_if(
        entries.begin(), entries.end(), [&](const Entry& candidate) { return candidate.view == &subview; });
    *entry = entries.back();
    entries.pop_back();
    if (entries.empty())
        level->second.erase(cell);
    if (level->second.empty())
        _levels.erase(level);
    ++_version;
}

void NSView::SubviewIndex::add(NSView& subview)
{
    const auto& subviews = _view._subviews;
    if (subviews.back() == &subview) {
        subview._order = subviews.size() > 1 ? subviews[subviews.size() - 2]->_order + 1 : 0;
    } else {
        std::size_t order = 0;
        for (const auto& sibling : subviews)
            sibling->_order = order++;
    }
    insert(subview);
    _newViews.insert(&subview);
}

void NSView::SubviewIndex::remove(NSView& subview)
{
    erase(subview, subview._frame);
    _newViews.erase(&subview);
    std::erase(_hitTesters, &subview);
}

void NSView::SubviewIndex::move(NSView& subview, NSRect old)
{
    erase(subview, old);
    insert(subview);
}

void NSView::SubviewIndex::find(NSRect rect, std::size_t first, Found& found) const
{
    rect = grownByRounding(rect);
    const auto start = std::ptrdiff_t(found.size());
    for (const auto& [level, cells] : _levels) {
        forEachIn(cells, level, rect, [&](NSView* view) {
            if (view->_order >= first)
                found.emplace_back(view->_order, view);
        });
    }
    std::sort(found.begin() + start, found.end());
}

NSView* NSView::SubviewIndex::hitTest(NSPoint point)
{
    // Not before now: a view that is added by its constructor may not have its final class then.
    for (NSView* const view : _newViews) {
        if (overridesHitTest(*view))
            _hitTesters.push_back(view);
    }
    _newViews.clear();

    Found found;
    find({point, NSZeroSize}, 0, found);
    for (NSView* const view : _hitTesters)
        found.emplace_back(view->_order, view);
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    for (auto candidate = found.rbegin(); candidate != found.rend(); ++candidate) {
        if (NSView* const hit = candidate->second->hitTest(point))
            return hit;
    }
    return nullptr;
}
