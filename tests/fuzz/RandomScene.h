#pragma once

#include "FuzzInput.h"

#include <CoreGraphics/CoreGraphics.h>

/// A drawing that bytes describe: the same bytes make the same calls. Its work is bounded, so that a fuzzer
/// can try many.
class RandomScene {
public:
    RandomScene(FuzzInput input, CGContextRef context)
        : _input(input)
        , _context(context)
    {
    }

    /// Draws it all, and closes what it has opened: saved states and layers.
    void draw();

private:
    void changeState();
    void changeStroke();
    void changeTransform();
    void addToPath();
    void clip();
    void paintPath();
    void drawGradient();
    void drawImage();
    void drawText();
    void nest();
    void unnest();

    double number() { return _input.takeNumber(kUnit); }
    CGPoint point() { return _input.takePoint(kUnit); }
    CGRect rect();
    /// 0 to 1, and a bit beyond.
    CGFloat component() { return _input.take<std::uint8_t>() / 250.0; }
    RetainPtr<CGColor> color();

    static constexpr double kUnit = 512; ///< most numbers are within 64

    FuzzInput _input;
    CGContextRef _context;
    int _depth = 0;
    bool _isLayer[8] = {}; ///< of each level: a layer, or a saved state
    int _pathElements = 0;
    int _outlines = 0;
};
