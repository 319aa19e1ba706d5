#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <span>

/// Writes the length of a polyline up to each of its points, starting with `total`, to as many `distances` as
/// there are points, at least one. Returns the last one.
///
/// Each segment has the length that std::hypot returns: with glibc the same bits, and with any C library less
/// than a unit in the last place from the truth.
double measurePolyline(std::span<const CGPoint> points, double total, double* distances);
