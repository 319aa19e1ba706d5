#pragma once

#include "CoreGraphics/CGCounted.h"
#include "CoreGraphics/raster/Pixels.h"

#include <Foundation/RetainPtr.h>

#include <atomic>
#include <concepts>
#include <vector>

/// The order in which the rectangles of a path are drawn. It is the same under all transforms that only scale
/// and translate, but for its direction. See raster/RectangleOrder.h.
struct CGPathBands final : CGCounted {
    /// In RectangleRaster's order, for an x axis to the right and a y axis downward, on which y is the
    /// negative of that in the path. Empty if the rectangles do not form bands.
    std::vector<AreaRect> rectangles;
    /// Edges that are closer to each other than this are the same.
    double rounding = 0;
};

template <> struct RetainTraits<CGPathBands> {
    static void retain(CGPathBands* bands) noexcept { CGRetainRecord(bands); }
    static void release(CGPathBands* bands) noexcept { CGReleaseRecord(bands); }
};

/// Caches the bands of a path. They are found at the second request, so that paths that are drawn once do not
/// have to pay for it. Requests are safe on any thread, as long as no other thread changes the path.
class CGPathBandsCache {
public:
    CGPathBandsCache() noexcept = default;
    /// A copy of a path has the same bands.
    CGPathBandsCache(const CGPathBandsCache& other) noexcept
        : _isRequested(other._isRequested.load(std::memory_order_relaxed))
        , _bands(CGRetainRecord(other._bands.load(std::memory_order_acquire)))
    {
    }
    CGPathBandsCache& operator=(const CGPathBandsCache&) = delete;
    ~CGPathBandsCache() { CGReleaseRecord(_bands.load(std::memory_order_acquire)); }

    /// The bands, which `find` returns with a reference; null at the first request.
    template <std::invocable Find> const CGPathBands* bands(Find find) const
    {
        if (CGPathBands* const cached = _bands.load(std::memory_order_acquire))
            return cached;
        if (!_isRequested.exchange(true, std::memory_order_relaxed))
            return nullptr;
        CGPathBands* const found = find();
        CGPathBands* cached = nullptr;
        if (_bands.compare_exchange_strong(cached, found, std::memory_order_acq_rel))
            return found;
        CGReleaseRecord(found); // another thread was faster
        return cached;
    }
    /// Removes the bands of a path that changes, and forgets requests.
    void clear() noexcept
    {
        if (_isRequested.load(std::memory_order_relaxed)) {
            _isRequested.store(false, std::memory_order_relaxed);
            CGReleaseRecord(_bands.exchange(nullptr, std::memory_order_acq_rel));
        }
    }

private:
    mutable std::atomic<bool> _isRequested = false;
    mutable std::atomic<CGPathBands*> _bands = nullptr;
};
