#include "CoreGraphics/raster/GlyphMasks.h"

#include <cstring>

namespace {

/// Latin text of one face takes 40 KB at 13 pixels per em with its baselines on pixels, 190 KB at all
/// positions.
constexpr std::size_t kGlyphCapacity = std::size_t(4) << 20;

/// The memory that a mask and a table need for themselves, about.
constexpr std::size_t kMaskSize = sizeof(GlyphMask) + 48;
constexpr std::size_t kTableSize = 512;

/// Rounded down. std::floor is a function call on processors without SSE 4.1.
int roundedDown(double value)
{
    const int truncated = int(value);
    return value < truncated ? truncated - 1 : truncated;
}

constexpr std::uint64_t inEachByte(std::uint64_t byte)
{
    return byte * 0x0101'0101'0101'0101;
}

/// The sums of eight bytes each, 255 where they would be larger.
std::uint64_t saturatedSum(std::uint64_t a, std::uint64_t b)
{
    constexpr std::uint64_t kHighBits = inEachByte(0x80);
    const std::uint64_t sum = ((a & ~kHighBits) + (b & ~kHighBits)) ^ ((a ^ b) & kHighBits);
    const std::uint64_t carries = ((a & b) | ((a | b) & ~sum)) & kHighBits;
    return sum | (carries >> 7) * 0xFF;
}

/// The area that holds all covered pixels, its width rounded up to a multiple of 8.
PixelRect paddedCoveredArea(const MaskView& drawn)
{
    PixelRect area = coveredArea(drawn);
    area.right = area.left + (area.width() + 7) / 8 * 8;
    return area;
}

} // namespace

GlyphPosition::GlyphPosition(double x, double y)
{
    const int quartersRight = roundedDown(4 * x + 0.5);
    const int quartersDown = roundedDown(4 * y + 0.5);
    pixel = {quartersRight >> 2, quartersDown >> 2};
    quarter = std::uint32_t(quartersRight & 3) | std::uint32_t(quartersDown & 3) << 2;
}

GlyphMask::GlyphMask(const MaskView& drawn)
    : _area(paddedCoveredArea(drawn))
    , _bytes(std::make_unique<unsigned char[]>(std::size_t(_area.pixelCount())))
{
    const PixelRect common = _area.intersection(drawn.area);
    for (int y = common.top; y < common.bottom; ++y)
        std::memcpy(_bytes.get() + std::ptrdiff_t(y - _area.top) * _area.width(), drawn.pixel(common.left, y),
            std::size_t(common.width()));
}

void GlyphMask::addTo(unsigned char* corner, int bytesPerRow) const
{
    const unsigned char* source = _bytes.get();
    for (int y = 0; y < _area.height(); ++y, corner += bytesPerRow) {
        for (int x = 0; x < _area.width(); x += 8, source += 8) {
            std::uint64_t sum = 0;
            std::uint64_t added = 0;
            std::memcpy(&sum, corner + x, sizeof sum);
            std::memcpy(&added, source, sizeof added);
            sum = saturatedSum(sum, added);
            std::memcpy(corner + x, &sum, sizeof sum);
        }
    }
}

std::size_t GlyphMask::byteCount() const
{
    return std::size_t(_area.pixelCount()) + kMaskSize;
}

GlyphMaskCache& GlyphMaskCache::shared()
{
    // Never destroyed: views may draw until the program ends.
    static auto* const cache = new GlyphMaskCache(kGlyphCapacity);
    return *cache;
}

std::size_t GlyphMaskCache::byteCount() const
{
    const std::scoped_lock lock(_mutex);
    return _tables.byteCount();
}

std::size_t GlyphMaskCache::ScaleHash::operator()(const GlyphScale& scale) const
{
    std::size_t hash = scale.face;
    for (const double factor : {scale.a, scale.b, scale.c, scale.d})
        hash = hash * 31 + std::hash<double>()(factor);
    return hash;
}

const std::shared_ptr<GlyphMaskCache::Table>& GlyphMaskCache::table(const GlyphScale& scale)
{
    if (const auto* table = _tables.find(scale))
        return *table;
    return _tables.insert(scale, std::make_shared<Table>(), kTableSize);
}

const GlyphMask& GlyphMaskCache::mask(
    Table& table, std::uint32_t glyph, std::uint32_t quarter, GlyphRasterizer& rasterizer)
{
    const std::uint64_t key = std::uint64_t(glyph) << 4 | quarter;
    if (const auto found = table.masks.find(key); found != table.masks.end())
        return found->second;
    GlyphMask drawn(rasterizer.draw(glyph, (quarter & 3) / 4.0, (quarter >> 2) / 4.0));
    _tables.grow(drawn.byteCount());
    return table.masks.emplace(key, std::move(drawn)).first->second;
}

void GlyphLine::add(const GlyphScale& scale, std::span<const PixelGlyph> glyphs, GlyphRasterizer& rasterizer)
{
    _tables.push_back(
        _cache.place(scale, glyphs, rasterizer, [this](const GlyphMask& mask, PixelPoint pixel) {
            const PixelRect area = mask.area(pixel);
            _area = _masks.empty() ? area : _area.united(area);
            _masks.push_back({&mask, pixel});
        }));
}

void GlyphLine::draw(unsigned char* bytes, int bytesPerRow) const
{
    for (const PlacedMask& placed : _masks) {
        const PixelRect area = placed.mask->area(placed.pixel);
        const std::ptrdiff_t row = area.top - _area.top;
        placed.mask->addTo(bytes + row * bytesPerRow + (area.left - _area.left), bytesPerRow);
    }
}

void GlyphLine::clear()
{
    _masks.clear();
    _tables.clear();
    _area = {};
}
