#pragma once

#include <cstddef>
#include <functional>

/// Calls `work` with 0 to `count` - 1, on several threads if there are processors for them, and returns when
/// all calls have ended. `work` must not throw. Any thread, also within such a call.
///
/// The threads are those of all dispatch queues. The queue is one that applications cannot reach, so that no
/// barrier of theirs holds up drawing. Where there is no memory for other threads' work, this one does all.
void applyOnRasterQueue(std::size_t count, const std::function<void(std::size_t)>& work);
