#pragma once

/// Logs one line that `function` was called with invalid arguments or in an invalid state, and the
/// consequence: "CGPathAddLineToPoint: nothing added: the path has no current point".
void CGLogMisuse(const char* function, const char* consequence);
