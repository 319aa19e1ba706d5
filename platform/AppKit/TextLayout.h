#pragma once

#include <AppKit/NSStringDrawing.h>
#include <CoreText/CTLine.h>

#include <vector>

/// A string as lines, for measuring and drawing it once. NSStringDrawing.h describes the rules.
class TextLayout {
public:
    /// Lines are at most `width` points wide; a width that is not above 0 is no limit.
    TextLayout(const NSAttributedString& string, double width, NSStringDrawingOptions options);

    /// The width of the widest line and the height of all.
    NSSize size() const { return _size; }
    /// From the top of the first line to its baseline.
    double firstBaseline() const { return _lines.empty() ? 0 : _lines.front().baseline; }

    /// Draws the lines between `left` and the width that they were made for, the first one's top at `top`, y
    /// downward in a flipped context.
    void draw(CGContextRef context, double left, double top, bool isFlipped) const;

private:
    struct Line {
        RetainPtr<const CTLine> line;
        double width = 0;
        double baseline = 0;  ///< below the top of the text
        double alignment = 0; ///< 0 left, 0.5 centre, 1 right
        bool isClipped = false;
    };
    class Builder;

    double _width; ///< 0 for none
    std::vector<Line> _lines;
    NSSize _size{};
};
