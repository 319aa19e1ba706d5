#pragma once

#include "CoreGraphics/raster/CoverageView.h"

#include <array>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

/// A coverage that nobody changes any more, without its edges in which nothing is covered. It lies relative
/// to an origin.
class KeptCoverage {
public:
    KeptCoverage(const CoverageView& coverage, PixelPoint origin);

    CoverageView at(PixelPoint origin) const;
    std::size_t byteCount() const { return std::size_t(_bytesPerRow) * std::size_t(_area.height()); }

private:
    PixelRect _area;
    int _bytesPerRow;
    std::unique_ptr<unsigned char[]> _bytes;
};

/// A coverage to paint through. When it is kept, this is what it lives on in; otherwise it lies in the memory
/// that it was drawn in.
struct LentCoverage {
    CoverageView view;
    std::shared_ptr<const KeptCoverage> keeper = nullptr;
};

/// Keeps the coverages that are painted time and again: views draw the same small shapes at the same place,
/// up to sixty times a second.
///
/// A coverage is kept when it is asked for the second time, so that what changes with each frame only passes
/// through. Those that were not asked for the longest make room for others. Two coverages are the same only
/// if the bytes of their keys are. Any thread.
class CoverageCache {
public:
    /// Keys and coverages take up to so many bytes together.
    explicit CoverageCache(std::size_t capacity)
        : _capacity(capacity)
    {
    }

    /// The one that all contexts share.
    static CoverageCache& shared();

    /// The coverage of a key, which says all that it depends on but the origin: the key's coverage moves with
    /// that. What is not kept is drawn by `draw`, which returns a CoverageView. Finding one that is kept
    /// allocates nothing.
    template <class Draw> LentCoverage coverage(std::string_view bytes, PixelPoint origin, Draw draw)
    {
        const Key key{bytes, std::hash<std::string_view>()(bytes)};
        if (auto kept = find(key)) {
            const CoverageView view = kept->at(origin);
            return {view, std::move(kept)};
        }
        const CoverageView drawn = draw();
        offer(key, drawn, origin);
        return {drawn};
    }

    /// What is taken up of the capacity.
    std::size_t byteCount() const;

private:
    struct Key {
        std::string_view bytes;
        std::size_t hash;

        bool operator==(const Key& other) const { return hash == other.hash && bytes == other.bytes; }
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const { return key.hash; }
    };
    struct Entry {
        std::string bytes;
        std::shared_ptr<const KeptCoverage> coverage;
        std::size_t hash;
        std::size_t byteCount() const;
    };

    std::shared_ptr<const KeptCoverage> find(const Key& key);
    /// Keeps what was drawn for a key if that was asked for before.
    void offer(const Key& key, const CoverageView& drawn, PixelPoint origin);
    void makeRoom(std::size_t byteCount);

    const std::size_t _capacity;
    mutable std::mutex _mutex;
    std::size_t _byteCount = 0;
    std::list<Entry> _entries; ///< those that were asked for last come first
    std::unordered_map<Key, std::list<Entry>::iterator, KeyHash> _entryOfKey; ///< whose bytes are the entry's
    std::array<std::size_t, 1024> _askedOnce{}; ///< hashes of keys, each where its lowest bits say
};
