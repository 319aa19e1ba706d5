#pragma once

#include "CoreText/ShapedText.h"

#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

/// Caches lines, least recently used evicted first: views create the lines of their text at each drawing.
class LayoutCache {
public:
    /// The line of a text, from `shape` if it is not cached.
    template <class Shape>
    std::shared_ptr<const ShapedText> get(const NSString& text, std::span<const TextSpan> spans, Shape shape)
    {
        makeKey(text, spans);
        if (auto line = find())
            return line;
        return insert(shape());
    }

private:
    struct Line {
        std::u16string key;
        std::shared_ptr<const ShapedText> shaped;
    };

    /// Sets `_key` to everything that a layout depends on.
    void makeKey(const NSString& text, std::span<const TextSpan> spans);
    std::shared_ptr<const ShapedText> find();
    /// Sets the line's serial, and caches it under `_key` unless that is too long.
    std::shared_ptr<const ShapedText> insert(std::shared_ptr<ShapedText> shaped);

    std::u16string _key;
    std::list<Line> _lines; ///< most recently used first
    std::unordered_map<std::u16string_view, std::list<Line>::iterator> _lineOfKey;
    std::size_t _unitCount = 0; ///< UTF-16 units of all keys
};
