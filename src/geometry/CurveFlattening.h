#pragma once

#include <KorvidAppKit/ZRBezierSeries.h>

#include <vector>

/// Appends the ends of the pieces into which ZRBezierSeries::subdivideToResolution cuts one segment, the very
/// same to the last bit, without its passes over a growing array.
void flattenCurve(CGPoint start, const ZRBezier& bezier, double resolution, std::vector<CGPoint>& points);
