#include "Foundation/DispatchPool.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>

namespace {

/// The limit for threads, however many of them wait.
constexpr std::size_t kMaximumThreads = 512;

thread_local bool isPoolThread = false;

class Pool {
public:
    void add(std::function<void()> work)
    {
        const std::lock_guard lock(_mutex);
        _work.push_back(std::move(work));
        findThread();
    }
    std::size_t width() const { return _limit; }
    void enterBlocked()
    {
        const std::lock_guard lock(_mutex);
        --_active;
        findThread();
    }
    void leaveBlocked()
    {
        // One thread too many may be running, until the next block ends.
        const std::lock_guard lock(_mutex);
        ++_active;
    }

private:
    /// Wakes or starts a thread, if there is work and one more may run.
    void findThread()
    {
        if (_work.empty() || _active >= _limit)
            return;
        _workArrived.notify_one();
        if (_work.size() <= _idle || _active + _idle >= _limit || _threads == kMaximumThreads)
            return;
        try {
            std::thread([this] { serve(); }).detach();
        } catch (const std::system_error&) {
            if (_threads == 0)
                throw; // otherwise the existing ones do the work
            return;
        }
        ++_threads;
        ++_idle;
    }

    void serve()
    {
        isPoolThread = true;
        std::unique_lock lock(_mutex);
        for (;;) {
            _workArrived.wait(lock, [this] { return !_work.empty() && _active < _limit; });
            --_idle;
            ++_active;
            {
                const auto work = std::move(_work.front());
                _work.pop_front();
                lock.unlock();
                work();
            }
            lock.lock();
            --_active;
            if (_idle >= _limit && _work.empty()) {
                --_threads; // was started while others waited
                return;
            }
            ++_idle;
        }
    }

    const std::size_t _limit = std::max(2U, std::thread::hardware_concurrency());
    std::mutex _mutex;
    std::condition_variable _workArrived;
    std::deque<std::function<void()>> _work;
    std::size_t _threads = 0;
    std::size_t _idle = 0;   ///< waiting for work, or about to
    std::size_t _active = 0; ///< running a block and not blocked
};

/// Never destroyed: its threads run until the process ends.
Pool& pool()
{
    static Pool* const instance = new Pool;
    return *instance;
}

} // namespace

void DispatchPool::run(std::function<void()> work)
{
    pool().add(std::move(work));
}

std::size_t DispatchPool::width()
{
    return pool().width();
}

DispatchPool::BlockedScope::BlockedScope()
{
    if (isPoolThread)
        pool().enterBlocked();
}

DispatchPool::BlockedScope::~BlockedScope()
{
    if (isPoolThread)
        pool().leaveBlocked();
}
