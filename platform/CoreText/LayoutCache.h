#pragma once

#include "CoreGraphics/raster/RecentlyUsed.h"
#include "CoreText/ShapedText.h"

#include <array>
#include <string>
#include <string_view>

/// Caches lines, because views create the lines of their text at each drawing.
///
/// New lines enter a small cache, unless they are longer than that, and a larger one when they are requested
/// again. Text that changes with each frame thus evicts no labels, and stays within memory that the
/// processor's caches hold. A line that left the small cache too soon is recognised by its hash.
class LayoutCache {
public:
    /// The line of a text, from `shape` if it is not cached.
    template <class Shape>
    std::shared_ptr<const ShapedText> get(const NSString& text, std::span<const TextSpan> spans, Shape shape)
    {
        makeKey(text, spans);
        const Key key{_key, std::hash<std::u16string_view>()(_key)};
        if (auto line = find(key))
            return line;
        return insert(key, shape());
    }

private:
    struct Key {
        std::u16string_view units;
        std::size_t hash;

        bool operator==(const Key& other) const { return hash == other.hash && units == other.units; }
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const { return key.hash; }
    };
    struct Line {
        std::u16string key;
        std::shared_ptr<const ShapedText> shaped;
    };
    using Lines = RecentlyUsed<Key, std::shared_ptr<const Line>, KeyHash>; ///< a key's units are its line's

    /// Sets `_key` to everything that a layout depends on.
    void makeKey(const NSString& text, std::span<const TextSpan> spans);
    std::shared_ptr<const ShapedText> find(const Key& key);
    /// Sets the line's serial, and caches it unless its key is too long.
    std::shared_ptr<const ShapedText> insert(const Key& key, std::shared_ptr<ShapedText> shaped);
    static void insert(Lines& lines, std::size_t hash, const std::shared_ptr<const Line>& line);

    /// In UTF-16 units: some thousand labels, which with their glyphs take a few megabytes.
    static constexpr std::size_t kCapacity = 65536;
    /// Some dozen labels.
    static constexpr std::size_t kNewCapacity = 1024;

    std::u16string _key;
    Lines _newLines{kNewCapacity};
    Lines _lines{kCapacity};
    std::array<std::size_t, 4096> _newHashes{}; ///< of new lines, indexed by their lowest bits
};
