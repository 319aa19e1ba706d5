#pragma once

#include "CoreGraphics/CGCubic.h"

/// Receives the elements of a path in order: see walk() in CGPathWalk.h.
class PathVisitor {
public:
    /// `isClosed` tells whether the subpath ends in a close.
    virtual void beginSubpath(CGPoint start, bool isClosed) = 0;
    virtual void addLine(CGPoint end) = 0;
    virtual void addCurve(const CGCubicCurve& curve) = 0;
    virtual void closeSubpath() = 0;

protected:
    ~PathVisitor() = default;
};
