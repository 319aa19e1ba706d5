#pragma once

#include "KorvidCanvas.h"

#include <AppKit/NSGraphicsContext.h>

/// Lets views draw on a canvas, as a window does, while in scope.
class CurrentContext {
public:
    explicit CurrentContext(const KorvidCanvas& canvas)
        : _context(NSGraphicsContext::graphicsContextWithCGContext(canvas.context(), false))
    {
        NSGraphicsContext::setCurrentContext(_context);
    }
    CurrentContext(const CurrentContext&) = delete;
    CurrentContext& operator=(const CurrentContext&) = delete;
    ~CurrentContext() { NSGraphicsContext::setCurrentContext(nullptr); }

private:
    RetainPtr<NSGraphicsContext> _context;
};
