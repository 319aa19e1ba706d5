#pragma once

#include <KorvidAppKit/ZRBezierSeries.h>

#include <vector>

/// Appends the ends of the pieces into which ZRBezierSeries::subdivideToResolution cuts one segment, with the
/// same bits (but for the sign of a NaN), without its passes over a growing array.
void flattenCurve(CGPoint start, const ZRBezier& bezier, double resolution, std::vector<CGPoint>& points);
