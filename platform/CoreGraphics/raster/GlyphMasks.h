#pragma once

#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/RecentlyUsed.h"

#include <memory>
#include <mutex>
#include <span>
#include <unordered_map>
#include <vector>

/// The position of a glyph's origin, rounded to quarters of a pixel.
struct GlyphPosition {
    /// Halves of a quarter are rounded up. Coordinates must lie within kFarthestPixel.
    GlyphPosition(double x, double y);

    PixelPoint pixel;      ///< rounded down to whole pixels
    std::uint32_t quarter; ///< the rest: quarters to the right, and 4 times the quarters downward
};

/// A glyph of a run, with the position of its origin in pixels, y downward.
struct PixelGlyph {
    std::uint32_t id = 0;
    double x = 0;
    double y = 0;
};

/// Draws the glyphs of one face at one scale.
class GlyphRasterizer {
public:
    /// The mask of a glyph whose origin lies `x` pixels to the right of the corner of pixel (0, 0), and `y`
    /// below it. Empty for a blank. Borrowed until the next call.
    virtual MaskView draw(std::uint32_t glyph, double x, double y) = 0;

protected:
    ~GlyphRasterizer() = default;
};

/// All that the masks of a run depend on, besides glyph and position: the face, and the columns of the
/// transform from ems to base space, where y is upward.
struct GlyphScale {
    std::uint64_t face = 0; ///< unique in the process
    double a = 0;
    double b = 0;
    double c = 0;
    double d = 0;

    bool operator==(const GlyphScale&) const = default;
};

/// The mask of a glyph at one of the 16 positions within a pixel.
class GlyphMask {
public:
    /// Copies the covered part of `drawn`.
    explicit GlyphMask(const MaskView& drawn);

    /// The pixels of the mask if the glyph's origin lies in `origin`. The width is a multiple of 8.
    PixelRect area(PixelPoint origin) const { return _area.moved(origin.x, origin.y); }
    bool isEmpty() const { return _area.isEmpty(); }
    /// Adds the mask to coverage bytes; sums stop at 255. `corner` is the top left pixel of the area.
    void addTo(unsigned char* corner, int bytesPerRow) const;
    std::size_t byteCount() const;

private:
    PixelRect _area; ///< of an origin in pixel (0, 0)
    std::unique_ptr<unsigned char[]> _bytes;
};

/// Caches the masks of glyphs, in one table for each face and scale. The tables that were used least recently
/// are evicted, whole. Any thread.
class GlyphMaskCache {
public:
    /// The masks of a scale, by glyph and position. They stay where they are until the table is destroyed.
    struct Table {
        std::unordered_map<std::uint64_t, GlyphMask> masks;
    };

    /// Tables take up to so many bytes together; the lines that are being drawn may use more for the moment.
    explicit GlyphMaskCache(std::size_t capacity)
        : _tables(capacity)
    {
    }

    /// The cache that all contexts share.
    static GlyphMaskCache& shared();

    /// Calls `place(mask, pixel)` for each glyph that leaves ink. The masks live as long as the table that is
    /// returned. Missing ones are drawn.
    template <class Place>
    std::shared_ptr<const Table> place(
        const GlyphScale& scale, std::span<const PixelGlyph> glyphs, GlyphRasterizer& rasterizer, Place place)
    {
        const std::scoped_lock lock(_mutex);
        const std::shared_ptr<Table> table = this->table(scale);
        for (const PixelGlyph& glyph : glyphs) {
            const GlyphPosition position(glyph.x, glyph.y);
            const GlyphMask& mask = this->mask(*table, glyph.id, position.quarter, rasterizer);
            if (!mask.isEmpty())
                place(mask, position.pixel);
        }
        _tables.evict();
        return table;
    }

    /// The bytes that all tables take.
    std::size_t byteCount() const;

private:
    struct ScaleHash {
        std::size_t operator()(const GlyphScale& scale) const;
    };

    /// The table of a scale, from now on the one used most recently.
    const std::shared_ptr<Table>& table(const GlyphScale& scale);
    /// A mask of the table used most recently.
    const GlyphMask& mask(
        Table& table, std::uint32_t glyph, std::uint32_t quarter, GlyphRasterizer& rasterizer);

    mutable std::mutex _mutex;
    RecentlyUsed<GlyphScale, std::shared_ptr<Table>, ScaleHash> _tables;
};

/// A line of glyphs, composed of masks.
class GlyphLine {
public:
    explicit GlyphLine(GlyphMaskCache& cache)
        : _cache(cache)
    {
    }

    /// Adds glyphs of one face and scale. The rasterizer is for this call.
    void add(const GlyphScale& scale, std::span<const PixelGlyph> glyphs, GlyphRasterizer& rasterizer);
    /// The pixels that the glyphs may cover. Empty if they are all blank.
    const PixelRect& area() const { return _area; }
    /// Adds the glyphs to coverage bytes, of which the first is the top left pixel of `area()`.
    void draw(unsigned char* bytes, int bytesPerRow) const;
    /// Removes all glyphs, but keeps the memory for the next ones.
    void clear();

private:
    struct PlacedMask {
        const GlyphMask* mask;
        PixelPoint pixel;
    };

    GlyphMaskCache& _cache;
    std::vector<PlacedMask> _masks;
    std::vector<std::shared_ptr<const GlyphMaskCache::Table>> _tables; ///< own the masks
    PixelRect _area;
};
