#include "CoreGraphics/raster/MaskCache.h"

#include <algorithm>
#include <cstring>

namespace {

/// In bytes. A window full of controls takes a tenth of this at a scale of 2.
constexpr std::size_t kSharedCapacity = std::size_t(8) << 20;

/// Approximate overhead of an entry.
constexpr std::size_t kEntrySize = 256;

bool isCovered(unsigned char coverage)
{
    return coverage != 0;
}

/// The smallest area that contains all pixels with a coverage above 0.
PixelRect coveredArea(const MaskView& mask)
{
    PixelRect covered{mask.area.right, mask.area.bottom, mask.area.left, mask.area.top};
    for (int y = mask.area.top; y < mask.area.bottom; ++y) {
        const unsigned char* begin = mask.pixel(mask.area.left, y);
        const unsigned char* end = begin + mask.area.width();
        const unsigned char* first = std::find_if(begin, end, isCovered);
        if (first == end)
            continue;
        const unsigned char* last = end;
        while (!isCovered(last[-1]))
            --last;
        covered = {std::min(covered.left, mask.area.left + int(first - begin)), std::min(covered.top, y),
            std::max(covered.right, mask.area.left + int(last - begin)), y + 1};
    }
    return covered.isEmpty() ? PixelRect{} : covered;
}

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

std::size_t MaskCache::Entry::byteCount() const
{
    return bytes.size() + mask->byteCount() + kEntrySize;
}

std::size_t MaskCache::byteCount() const
{
    const std::scoped_lock lock(_mutex);
    return _byteCount;
}

std::shared_ptr<const CachedMask> MaskCache::find(const Key& key)
{
    const std::scoped_lock lock(_mutex);
    const auto found = _entryOfKey.find(key);
    if (found == _entryOfKey.end())
        return nullptr;
    _entries.splice(_entries.begin(), _entries, found->second);
    return found->second->mask;
}

void MaskCache::insert(const Key& key, const MaskView& drawn, PixelPoint origin)
{
    {
        const std::scoped_lock lock(_mutex);
        std::size_t& requestedOnce = _requestedOnce[key.hash % _requestedOnce.size()];
        if (requestedOnce != key.hash) {
            requestedOnce = key.hash;
            return;
        }
    }
    Entry entry{std::string(key.bytes), std::make_shared<const CachedMask>(drawn, origin), key.hash};
    const std::size_t byteCount = entry.byteCount();
    const std::scoped_lock lock(_mutex);
    if (byteCount > _capacity || _entryOfKey.contains(key)) // another thread may have been faster
        return;
    evictFor(byteCount);
    _entries.push_front(std::move(entry));
    _entryOfKey.emplace(Key{_entries.front().bytes, key.hash}, _entries.begin());
    _byteCount += byteCount;
}

void MaskCache::evictFor(std::size_t byteCount)
{
    while (_byteCount + byteCount > _capacity) {
        const Entry& oldest = _entries.back();
        _byteCount -= oldest.byteCount();
        _entryOfKey.erase({oldest.bytes, oldest.hash});
        _entries.pop_back();
    }
}
