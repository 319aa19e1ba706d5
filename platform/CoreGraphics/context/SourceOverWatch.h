#pragma once

#include <CoreGraphics/CGContext.h>

/// Stops painting into a context at the first paint that is more than source-over.
///
/// Source-over gives the same pixels straight on a backdrop as in a transparent layer that is composited over
/// it later. With any other blend mode the two differ, so whoever draws straight as long as possible needs to
/// know, before a pixel has changed. A copy of an opaque colour counts as source-over: it is the same.
///
/// Watches from construction to destruction. Of several on one context the newest counts.
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

    /// Whether something was to be painted in another way than source-over.
    bool hasSeenOtherModes() const { return _hasSeenOtherModes; }

private:
    friend struct CGContext;

    /// Takes note of a paint, and returns whether it may change pixels.
    bool admits(bool isSourceOver);

    CGContextRef _context;
    SourceOverWatch* const _previous;
    const bool _paints;
    bool _hasSeenOtherModes = false;
};
