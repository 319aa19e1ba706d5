#include <Foundation/dispatch.h>

#include "Foundation/DispatchPool.h"
#include "Foundation/RunLoop.h"

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

struct dispatch_queue_attr_s { };
const dispatch_queue_attr_s _dispatch_queue_attr_concurrent;

namespace {

/// A thread that waits in `dispatch_sync` for its turn or for the main thread.
struct Waiter {
    std::mutex mutex;
    std::condition_variable condition;
    bool isSignalled = false;

    void signal()
    {
        // Under the lock: the waiting thread may destroy this object as soon as it sees the flag.
        const std::lock_guard lock(mutex);
        isSignalled = true;
        condition.notify_one();
    }
    void wait()
    {
        const DispatchPool::BlockedScope madeUpFor;
        std::unique_lock lock(mutex);
        condition.wait(lock, [this] { return isSignalled; });
    }
};

/// Runs a block; an exception that leaves it ends the process here, where the stack still shows the block.
void call(const dispatch_block_t& block) noexcept
{
    block();
}

/// The calls of one `dispatch_apply`; each participating thread takes the next one.
class Iterations {
public:
    Iterations(std::size_t count, const std::function<void(std::size_t)>& block)
        : _block(block)
        , _count(count)
        , _unfinished(count)
    {
    }

    /// Makes calls while any are left. May run after all of them, and after the block's destruction, which it
    /// then does not touch.
    void work()
    {
        for (std::size_t i = _next.fetch_add(1); i < _count; i = _next.fetch_add(1)) {
            _block(i);
            if (_unfinished.fetch_sub(1) == 1)
                _finished.signal();
        }
    }
    void waitForAll() { _finished.wait(); }

private:
    const std::function<void(std::size_t)>& _block;
    const std::size_t _count;
    std::atomic<std::size_t> _next = 0;
    std::atomic<std::size_t> _unfinished;
    Waiter _finished;
};

} // namespace

/// Blocks in the order in which they were added. An exclusive one ("barrier") starts when nothing else runs,
/// any other when no exclusive one runs; none overtakes another. In a serial queue every block is exclusive.
struct dispatch_queue_s {
    enum class Kind { Serial, Concurrent, Main };

    dispatch_queue_s(const char* name, Kind queueKind)
        : label(name ? name : "")
        , kind(queueKind)
    {
    }

    struct Item {
        std::function<void()> start; ///< starts the block on some thread and returns at once
        bool isAlone;
    };

    void add(Item item);
    void addAsync(dispatch_block_t block, bool isAlone);
    void addSync(const dispatch_block_t& block);
    /// Runs a block that may start and lets the next ones start.
    void run(const dispatch_block_t& block, bool isAlone);
    void retain() { retainCount.fetch_add(1, std::memory_order_relaxed); }
    void release()
    {
        if (retainCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }

    const std::string label;
    const Kind kind;
    std::atomic<NSUInteger> retainCount{1};

private:
    ~dispatch_queue_s() = default;
    void startWhatMay(std::unique_lock<std::mutex>& lock);

    std::mutex mutex;
    std::deque<Item> waiting;
    NSUInteger running = 0;
    bool aloneRuns = false;
    std::thread::id aloneThread; ///< the thread that runs the exclusive block
};

void dispatch_queue_s::startWhatMay(std::unique_lock<std::mutex>& lock)
{
    // One by one, without a list of them: this must not fail where memory has run out.
    while (!waiting.empty() && !aloneRuns && (!waiting.front().isAlone || running == 0)) {
        ++running;
        aloneRuns = waiting.front().isAlone;
        const Item item = std::move(waiting.front());
        waiting.pop_front();
        lock.unlock();
        item.start();
        lock.lock();
    }
}

void dispatch_queue_s::add(Item item)
{
    std::unique_lock lock(mutex);
    waiting.push_back(std::move(item));
    startWhatMay(lock);
}

void dispatch_queue_s::run(const dispatch_block_t& block, bool isAlone)
{
    if (isAlone) {
        const std::lock_guard lock(mutex);
        aloneThread = std::this_thread::get_id();
    }
    call(block);
    std::unique_lock lock(mutex);
    --running;
    if (isAlone) {
        aloneRuns = false;
        aloneThread = {};
    }
    startWhatMay(lock);
}

void dispatch_queue_s::addAsync(dispatch_block_t block, bool isAlone)
{
    retain(); // until the block has run
    auto work = [this, block = std::move(block), isAlone]() mutable {
        run(block, isAlone);
        block = nullptr;
        release();
    };
    auto start = [this, work = std::move(work)]() mutable {
        if (kind == Kind::Main)
            RunLoopCore::main().post(std::move(work));
        else
            DispatchPool::run(std::move(work));
    };
    add({std::move(start), isAlone});
}

void dispatch_queue_s::addSync(const dispatch_block_t& block)
{
    const bool isAlone = kind != Kind::Concurrent;
    {
        const std::lock_guard lock(mutex);
        const bool wouldWaitForItself = aloneThread == std::this_thread::get_id();
        if (wouldWaitForItself || (kind == Kind::Main && isMainThread())) {
            std::fprintf(stderr, "dispatch_sync: the queue \"%s\" would wait for itself\n", label.c_str());
            std::abort();
        }
    }
    Waiter turn;
    if (kind == Kind::Main) {
        addAsync(
            [&] {
                call(block);
                turn.signal();
            },
            true);
        turn.wait();
        return;
    }
    add({[&] { turn.signal(); }, isAlone});
    turn.wait();
    run(block, isAlone);
}

dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t attr)
{
    using Kind = dispatch_queue_s::Kind;
    return new dispatch_queue_s(label, attr == DISPATCH_QUEUE_CONCURRENT ? Kind::Concurrent : Kind::Serial);
}

dispatch_queue_t dispatch_get_main_queue()
{
    static const dispatch_queue_t queue =
        new dispatch_queue_s("com.apple.main-thread", dispatch_queue_s::Kind::Main);
    return queue;
}

void dispatch_retain(dispatch_queue_t queue)
{
    if (queue)
        queue->retain();
}

void dispatch_release(dispatch_queue_t queue)
{
    if (queue && queue != dispatch_get_main_queue())
        queue->release();
}

const char* dispatch_queue_get_label(dispatch_queue_t queue)
{
    return queue ? queue->label.c_str() : "";
}

void dispatch_async(dispatch_queue_t queue, dispatch_block_t block)
{
    if (queue && block)
        queue->addAsync(std::move(block), queue->kind != dispatch_queue_s::Kind::Concurrent);
}

void dispatch_barrier_async(dispatch_queue_t queue, dispatch_block_t block)
{
    if (queue && block)
        queue->addAsync(std::move(block), true);
}

void dispatch_sync(dispatch_queue_t queue, const dispatch_block_t& block)
{
    if (queue && block)
        queue->addSync(block);
}

void dispatch_apply(
    std::size_t iterations, dispatch_queue_t queue, const std::function<void(std::size_t)>& block)
{
    if (iterations == 0 || !block)
        return;
    if (!queue || queue->kind != dispatch_queue_s::Kind::Concurrent) {
        dispatch_sync(queue, [&] {
            for (std::size_t i = 0; i < iterations; ++i)
                block(i);
        });
        return;
    }
    const auto shared = std::make_shared<Iterations>(iterations, block);
    // The other threads' blocks are added in the caller's own turn: behind a barrier that waits for the end
    // of this turn they start too late to be useful, but never before the barrier.
    dispatch_sync(queue, [&] {
        try {
            for (std::size_t i = 1; i < std::min(iterations, DispatchPool::width()); ++i)
                queue->addAsync([shared] { shared->work(); }, false);
        } catch (const std::exception&) {
            // Without memory for another block or thread, those that are there do all the work.
        }
        shared->work();
        shared->waitForAll();
    });
}

void _dispatch_once_slow(dispatch_once_t* predicate, const dispatch_block_t& block) noexcept
{
    constexpr dispatch_once_t notRun = 0;
    constexpr dispatch_once_t runs = 1;
    constexpr dispatch_once_t done = -1;
    if (!block)
        return;
    std::atomic_ref<dispatch_once_t> state(*predicate);
    dispatch_once_t seen = notRun;
    if (state.compare_exchange_strong(seen, runs, std::memory_order_acquire)) {
        block();
        state.store(done, std::memory_order_release);
        state.notify_all();
        return;
    }
    const DispatchPool::BlockedScope madeUpFor;
    while (state.load(std::memory_order_acquire) == runs)
        state.wait(runs, std::memory_order_acquire);
}
