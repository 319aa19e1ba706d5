#pragma once

#include <CoreGraphics/CGContext.h>

/// Detects paints with a blend mode other than source-over, and can stop painting into a context at the first
/// one.
///
/// Source-over gives the same pixels directly on a backdrop as in a transparent layer that is composited over
/// it afterwards. Other blend modes do not, so a caller that draws directly to save the layer must know of
/// such a paint before it changes a pixel. A copy of an opaque colour counts as source-over, because the
/// result is the same. What is drawn in a transparency layer is not looked at: the paint of the layer
/// decides.
///
/// Active from construction to destruction. If a context has several watches, the newest one is in effect.
class SourceOverWatch {
public:
    enum class Paints {
        UntilOtherMode, ///< source-over changes pixels up to the first other paint, and nothing from then on
        Nothing,        ///< only watches
    };

    SourceOverWatch(CGContextRef context, Paints paints);
    SourceOverWatch(const SourceOverWatch&) = delete;
    SourceOverWatch& operator=(const SourceOverWatch&) = delete;
    ~SourceOverWatch();

    /// Whether a paint other than source-over was requested.
    bool hasSeenOtherModes() const { return _hasSeenOtherModes; }

private:
    friend struct CGContext;

    /// Records a paint, and returns whether it may change pixels.
    bool admits(bool isSourceOver);

    CGContextRef _context;
    SourceOverWatch* const _previous;
    const std::size_t _layerCount; ///< of the context at construction
    const bool _paints;
    bool _hasSeenOtherModes = false;
};
