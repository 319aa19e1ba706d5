#pragma once

#include "CoreGraphics/raster/Vectors.h"

/// Tells whether a closed line is convex: whether it turns to one side only, and once around.
///
/// A line of cubic curves is convex if the lines between all their points, control points included, are.
class Convexity {
public:
    /// Begins another line.
    void begin() { *this = {}; }
    /// Adds the next part of the line.
    void add(CGPoint part)
    {
        const double squared = dot(part, part);
        if (!(squared > kLeastLength * kLeastLength))
            return;
        if (_squared > 0) {
            const double turn = cross(_last, part);
            const double least = kLeastTurn * std::sqrt(squared * _squared);
            _turnsLeft = _turnsLeft || !(turn <= least); // NaN is both
            _turnsRight = _turnsRight || !(turn >= -least);
            _turnsBack = _turnsBack || (std::abs(turn) <= least && dot(_last, part) < 0);
        } else {
            _first = part;
        }
        _last = part;
        _squared = squared;
        if (std::abs(part.y) <= kLeastLength)
            return;
        const bool isUp = part.y > 0;
        _changes += _hasDirection && isUp != _isUp ? 1 : 0;
        _hasDirection = true;
        _isUp = isUp;
    }
    /// Adds the turn from the last part to the first one.
    void close() { add(_first); }
    /// Whether the parts so far may belong to a convex line.
    bool isPossible() const
    {
        return !(_turnsLeft && _turnsRight) && !_turnsBack && _changes <= kMostChanges;
    }
    /// Of a line that has been closed.
    bool isConvex() const { return isPossible() && (_turnsLeft || _turnsRight); }

private:
    /// In pixels; what is shorter has no direction.
    static constexpr double kLeastLength = 1e-9;
    /// The sine of an angle that is only rounding.
    static constexpr double kLeastTurn = 1e-9;
    /// Of the direction along y, in one turn around.
    static constexpr int kMostChanges = 2;

    CGPoint _first{};
    CGPoint _last{};
    double _squared = 0; ///< of the last part's length
    bool _turnsLeft = false;
    bool _turnsRight = false;
    bool _turnsBack = false;
    bool _hasDirection = false;
    bool _isUp = false;
    int _changes = 0;
};
