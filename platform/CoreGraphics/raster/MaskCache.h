#pragma once

#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/RecentlyUsed.h"

#include <array>
#include <concepts>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

/// An immutable mask relative to an origin, without its empty borders.
class CachedMask {
public:
    CachedMask(const MaskView& mask, PixelPoint origin);

    MaskView at(PixelPoint origin) const;
    std::size_t byteCount() const { return std::size_t(_bytesPerRow) * std::size_t(_area.height()); }

private:
    PixelRect _area;
    int _bytesPerRow;
    std::unique_ptr<unsigned char[]> _bytes;
};

/// A mask and, if it is cached, its owner. Without an owner the mask is in the memory that it was drawn in.
struct MaskRef {
    MaskView view;
    std::shared_ptr<const CachedMask> owner = nullptr;
};

/// Caches the masks of shapes that are painted repeatedly: views draw the same small shapes at the same place
/// up to sixty times a second.
///
/// A mask is cached at its second request, so that masks that change with each frame evict no others. The
/// least recently used are evicted first. Keys are compared byte by byte. Safe on any thread.
class MaskCache {
public:
    /// `capacity` bounds the bytes of keys and masks together.
    explicit MaskCache(std::size_t capacity)
        : _entries(capacity)
    {
    }

    /// The cache that all contexts share.
    static MaskCache& shared();

    /// The mask of a key. The key describes everything that the mask depends on except `origin`, relative to
    /// which it is cached. Calls `draw` when the mask is not cached. A hit does not allocate.
    template <std::invocable Draw>
    requires std::same_as<std::invoke_result_t<Draw>, MaskView> MaskRef mask(
        std::string_view bytes, PixelPoint origin, Draw draw)
    {
        const Key key = keyOf(bytes);
        auto [cached, isRepeated] = request(key);
        if (cached)
            return at(origin, std::move(cached));
        const MaskView drawn = draw();
        if (isRepeated)
            insert(key, drawn, origin);
        return {drawn};
    }
    /// The same, but nullopt at the first request of a key, for callers that can do without a mask at less
    /// cost than that of drawing one.
    template <std::invocable Draw>
    requires std::same_as<std::invoke_result_t<Draw>, MaskView> std::optional<MaskRef> repeatedMask(
        std::string_view bytes, PixelPoint origin, Draw draw)
    {
        const Key key = keyOf(bytes);
        auto [cached, isRepeated] = request(key);
        if (cached)
            return at(origin, std::move(cached));
        if (!isRepeated)
            return std::nullopt;
        const MaskView drawn = draw();
        insert(key, drawn, origin);
        return MaskRef{drawn};
    }

    /// The bytes in use.
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
        CachedMask mask;
    };

    static Key keyOf(std::string_view bytes) { return {bytes, std::hash<std::string_view>()(bytes)}; }
    static MaskRef at(PixelPoint origin, std::shared_ptr<const CachedMask> cached)
    {
        const MaskView view = cached->at(origin);
        return {view, std::move(cached)};
    }
    /// What there is at a request of a key.
    struct Found {
        std::shared_ptr<const CachedMask> mask; ///< null when it is not cached
        bool isRepeated;                        ///< whether the key has been requested before
    };
    Found request(const Key& key);
    /// Inserts a copy of the mask drawn for a key.
    void insert(const Key& key, const MaskView& drawn, PixelPoint origin);

    mutable std::mutex _mutex;
    RecentlyUsed<Key, std::shared_ptr<const Entry>, KeyHash> _entries; ///< a key's bytes are its entry's
    std::array<std::size_t, 1024> _requestedOnce{}; ///< hashes of keys, indexed by their lowest bits
};
