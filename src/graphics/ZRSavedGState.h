#pragma once

#include <CoreGraphics/CGContext.h>

/// Saves a context's graphics state and restores it at the end of the scope.
class ZRSavedGState {
public:
    explicit ZRSavedGState(CGContextRef context)
        : _context(context)
    {
        CGContextSaveGState(_context);
    }
    ZRSavedGState(const ZRSavedGState&) = delete;
    ZRSavedGState& operator=(const ZRSavedGState&) = delete;
    ~ZRSavedGState() { CGContextRestoreGState(_context); }

private:
    CGContextRef _context;
};
