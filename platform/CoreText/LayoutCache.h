#pragma once

#include "CoreText/ShapedText.h"

#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

/// Keeps the lines that were laid out last: views make the lines of their texts anew for each drawing.
class LayoutCache {
public:
    /// The line of a text, from `shape` if it is not kept.
    template <class Shape>
    std::shared_ptr<const ShapedText> get(const NSString& text, std::span<const TextSpan> spans, Shape shape)
    {
        makeKey(text, spans);
        if (auto line = find())
            return line;
        return keep(shape());
    }

private:
    struct Line {
        std::u16string key;
        std::shared_ptr<const ShapedText> shaped;
    };

    /// Everything that makes a difference, in `_key`.
    void makeKey(const NSString& text, std::span<const TextSpan> spans);
    std::shared_ptr<const ShapedText> find();
    /// Gives the line its serial, and keeps it under `_key` if that is of reasonable length.
    std::shared_ptr<const ShapedText> keep(std::shared_ptr<ShapedText> shaped);

    std::u16string _key;
    std::list<Line> _lines; ///< the one used last comes first
    std::unordered_map<std::u16string_view, std::list<Line>::iterator> _lineOfKey;
    std::size_t _unitsKept = 0; ///< of the keys
};
