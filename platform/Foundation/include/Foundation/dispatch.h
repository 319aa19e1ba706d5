#pragma once

#include <Foundation/NSObjCRuntime.h>
#include <Foundation/RetainPtr.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>
#include <utility>

/// Queues that run blocks of work, and a block that runs once.
///
/// Every function is safe on any thread and accepts null: it then does nothing, or returns a neutral value.
/// An exception that leaves a block ends the process by `std::terminate`. Blocks that are still waiting when
/// the process exits never run.

/// The work that a queue is given.
using dispatch_block_t = std::function<void()>;

/// A queue of blocks. Reference counted: `dispatch_retain`, `dispatch_release`, or a RetainPtr.
struct dispatch_queue_s;
/// A pointer to a queue.
using dispatch_queue_t = dispatch_queue_s*;

/// The kind of a new queue.
struct dispatch_queue_attr_s;
/// A pointer to the kind of a queue; null is serial.
using dispatch_queue_attr_t = const dispatch_queue_attr_s*;

/// The attribute of `DISPATCH_QUEUE_CONCURRENT`.
extern KORVID_EXPORT const dispatch_queue_attr_s _dispatch_queue_attr_concurrent;

/// One block at a time, in the order in which they were added.
#define DISPATCH_QUEUE_SERIAL (static_cast<dispatch_queue_attr_t>(nullptr))
/// Blocks start in the order in which they were added and may run at the same time.
#define DISPATCH_QUEUE_CONCURRENT (&_dispatch_queue_attr_concurrent)

/// Records whether a block ran. Give it static storage, so that it starts at 0, and do not change it.
using dispatch_once_t = std::intptr_t;

/// The slow half of `dispatch_once`: runs `block`, or waits for the thread that is running it.
KORVID_EXPORT void _dispatch_once_slow(dispatch_once_t* predicate, const dispatch_block_t& block) noexcept;

/// Runs `block` the first time it is called with `predicate`; other threads wait until that call returns.
///
/// Once it ran, a call costs one load. Calling it with the same predicate from inside the block never
/// returns. A null predicate or an empty function: nothing runs.
template <class Block> void dispatch_once(dispatch_once_t* predicate, Block&& block) noexcept
{
    constexpr dispatch_once_t done = -1;
    if (!predicate || std::atomic_ref<dispatch_once_t>(*predicate).load(std::memory_order_acquire) == done)
        return;
    _dispatch_once_slow(predicate, std::forward<Block>(block));
}

extern "C" {

/// A new queue, owned by the caller. `label` is copied; null counts as "". `attr` is one of the two above.
///
/// The blocks of all queues run on one pool with as many threads as the machine has processors, but at
/// least two; another thread replaces one that waits in `dispatch_sync`, so queues may wait for each other.
/// A released queue lives until its last block has ended.
[[nodiscard]] KORVID_EXPORT dispatch_queue_t dispatch_queue_create(
    const char* label, dispatch_queue_attr_t attr);

/// The serial queue whose blocks run on the main thread: in every turn of the main run loop in the common
/// modes, or of Qt's event loop. Borrowed, never destroyed.
KORVID_EXPORT dispatch_queue_t dispatch_get_main_queue();

/// Adds a reference.
KORVID_EXPORT void dispatch_retain(dispatch_queue_t queue);
/// Removes a reference. A queue that still has blocks runs them first.
KORVID_EXPORT void dispatch_release(dispatch_queue_t queue);

/// The label given at creation, valid as long as the queue; "" for null, "com.apple.main-thread" for the
/// main queue.
KORVID_EXPORT const char* dispatch_queue_get_label(dispatch_queue_t queue);

} // extern "C"

/// Adds `block` to the queue and returns at once. An empty function is ignored.
KORVID_EXPORT void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);

/// Adds `block` to the queue and returns when it has run. It runs on the calling thread, except on the main
/// queue. An empty function is ignored.
///
/// On a serial queue, the main queue or within a barrier, a block that calls this with the queue it is
/// running on could only wait for itself: the process is stopped with a message.
KORVID_EXPORT void dispatch_sync(dispatch_queue_t queue, const dispatch_block_t& block);

/// Like `dispatch_async`, but the block runs alone: after all earlier blocks of the queue have ended and
/// before any later one starts. On a serial queue every block does.
KORVID_EXPORT void dispatch_barrier_async(dispatch_queue_t queue, dispatch_block_t block);

/// Calls `block` with 0, 1, … `iterations` - 1 and returns when all calls have ended; the block only has to
/// live as long as this call.
///
/// On a concurrent queue the calls start in that order and run at the same time, on the calling thread and on
/// as many others as the machine has processors for; the whole counts as one block that was added by
/// `dispatch_sync`. On a serial queue they run one by one, like a loop in such a block. Calls may themselves
/// call this, with the same queue where that is concurrent. No iterations or an empty function: nothing runs.
///
/// Differs: a null queue runs nothing, where Apple's picks one for the caller.
KORVID_EXPORT void dispatch_apply(
    std::size_t iterations, dispatch_queue_t queue, const std::function<void(std::size_t)>& block);

template <> struct RetainTraits<dispatch_queue_s> {
    static void retain(dispatch_queue_t queue) noexcept { dispatch_retain(queue); }
    static void release(dispatch_queue_t queue) noexcept { dispatch_release(queue); }
};
