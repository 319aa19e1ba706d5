#pragma once

/// Logs one line that `function` was called in a way that cannot be answered, and what came of it:
/// "CGPathAddLineToPoint: nothing added: the path has no current point".
void CGLogMisuse(const char* function, const char* consequence);
