#include "CoreGraphics/raster/CoverageCache.h"

#include <algorithm>
#include <cstring>

namespace {

/// A window full of controls takes a tenth of this at twice the scale.
constexpr std::size_t kSharedCapacity = std::size_t(8) << 20;

/// What an entry takes beside its bytes, about.
constexpr std::size_t kEntrySize = 256;

bool isCovered(unsigned char coverage)
{
    return coverage != 0;
}

/// The smallest area that holds all that is covered.
PixelRect coveredArea(const CoverageView& coverage)
{
    PixelRect covered{coverage.area.right, coverage.area.bottom, coverage.area.left, coverage.area.top};
    for (int y = coverage.area.top; y < coverage.area.bottom; ++y) {
        const unsigned char* begin = coverage.pixel(coverage.area.left, y);
        const unsigned char* end = begin + coverage.area.width();
        const unsigned char* first = std::find_if(begin, end, isCovered);
        if (first == end)
            continue;
        const unsigned char* last = end;
        while (!isCovered(last[-1]))
            --last;
        covered = {std::min(covered.left, coverage.area.left + int(first - begin)), std::min(covered.top, y),
            std::max(covered.right, coverage.area.left + int(last - begin)), y + 1};
    }
    return covered.isEmpty() ? PixelRect{} : covered;
}

} // namespace

KeptCoverage::KeptCoverage(const CoverageView& coverage, PixelPoint origin)
    : _area(coveredArea(coverage))
    , _bytesPerRow((_area.width() + 3) / 4 * 4)
    , _bytes(std::make_unique<unsigned char[]>(byteCount()))
{
    for (int y = _area.top; y < _area.bottom; ++y)
        std::memcpy(_bytes.get() + std::ptrdiff_t(y - _area.top) * _bytesPerRow,
            coverage.pixel(_area.left, y), std::size_t(_area.width()));
    _area = _area.moved(-origin.x, -origin.y);
}

CoverageView KeptCoverage::at(PixelPoint origin) const
{
    return {_area.moved(origin.x, origin.y), _bytes.get(), _bytesPerRow};
}

CoverageCache& CoverageCache::shared()
{
    // Never destroyed: views may draw to the last.
    static auto* const cache = new CoverageCache(kSharedCapacity);
    return *cache;
}

std::size_t CoverageCache::Entry::byteCount() const
{
    return bytes.size() + coverage->byteCount() + kEntrySize;
}

std::size_t CoverageCache::byteCount() const
{
    const std::scoped_lock lock(_mutex);
    return _byteCount;
}

std::shared_ptr<const KeptCoverage> CoverageCache::find(const Key& key)
{
    const std::scoped_lock lock(_mutex);
    const auto found = _entryOfKey.find(key);
    if (found == _entryOfKey.end())
        return nullptr;
    _entries.splice(_entries.begin(), _entries, found->second);
    return found->second->coverage;
}

void CoverageCache::offer(const Key& key, const CoverageView& drawn, PixelPoint origin)
{
    {
        const std::scoped_lock lock(_mutex);
        std::size_t& askedOnce = _askedOnce[key.hash % _askedOnce.size()];
        if (askedOnce != key.hash) {
            askedOnce = key.hash;
            return;
        }
    }
    Entry entry{std::string(key.bytes), std::make_shared<const KeptCoverage>(drawn, origin), key.hash};
    const std::size_t byteCount = entry.byteCount();
    const std::scoped_lock lock(_mutex);
    if (byteCount > _capacity || _entryOfKey.contains(key)) // another thread may have been faster
        return;
    makeRoom(byteCount);
    _entries.push_front(std::move(entry));
    _entryOfKey.emplace(Key{_entries.front().bytes, key.hash}, _entries.begin());
    _byteCount += byteCount;
}

void CoverageCache::makeRoom(std::size_t byteCount)
{
    while (_byteCount + byteCount > _capacity) {
        const Entry& oldest = _entries.back();
        _byteCount -= oldest.byteCount();
        _entryOfKey.erase({oldest.bytes, oldest.hash});
        _entries.pop_back();
    }
}
