#include "CoreGraphics/raster/MaskCache.h"

#include <cstring>
#include <utility>

namespace {

/// In bytes. A window full of controls takes a tenth of this at a scale of 2.
constexpr std::size_t kSharedCapacity = std::size_t(8) << 20;

/// Approximate overhead of an entry.
constexpr std::size_t kEntrySize = 256;

} // namespace

CachedMask::CachedMask(const MaskView& mask, PixelPoint origin)
    : _area(coveredArea(mask))
    , _bytesPerRow((_area.width() + 3) / 4 * 4)
    , _bytes(std::make_unique<unsigned char[]>(byteCount()))
{
    for (int y = _area.top; y < _area.bottom; ++y)
        std::memcpy(_bytes.get() + std::ptrdiff_t(y - _area.top) * _bytesPerRow, mask.pixel(_area.left, y),
            std::size_t(_area.width()));
    _area = _area.moved(-origin.x, -origin.y);
}

MaskView CachedMask::at(PixelPoint origin) const
{
    return {_area.moved(origin.x, origin.y), _bytes.get(), _bytesPerRow};
}

MaskCache& MaskCache::shared()
{
    // Never destroyed: views may draw until the program ends.
    static auto* const cache = new MaskCache(kSharedCapacity);
    return *cache;
}

std::size_t MaskCache::byteCount() const
{
    const std::scoped_lock lock(_mutex);
    return _entries.byteCount();
}

MaskCache::Found MaskCache::request(const Key& key)
{
    const std::scoped_lock lock(_mutex);
    if (const std::shared_ptr<const Entry>* entry = _entries.find(key))
        return {std::shared_ptr<const CachedMask>(*entry, &(*entry)->mask), true};
    std::size_t& requestedOnce = _requestedOnce[key.hash % _requestedOnce.size()];
    return {nullptr, std::exchange(requestedOnce, key.hash) == key.hash};
}

void MaskCache::insert(const Key& key, const MaskView& drawn, PixelPoint origin)
{
    const auto entry = std::make_shared<const Entry>(Entry{std::string(key.bytes), {drawn, origin}});
    const std::size_t byteCount = entry->bytes.size() + entry->mask.byteCount() + kEntrySize;
    const std::scoped_lock lock(_mutex);
    if (byteCount > _entries.capacity() || _entries.find(key)) // another thread may have been faster
        return;
    _entries.insert({entry->bytes, key.hash}, entry, byteCount);
    _entries.evict();
}
