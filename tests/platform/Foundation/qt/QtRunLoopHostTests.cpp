#include <Foundation/Foundation.h>

#include "Foundation/testing/ManualClock.h"

#include <Foundation/NSDate.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <QTimer>
#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace {

/// An application for the time of one test.
class Application {
public:
    QCoreApplication* operator->() { return &_application; }

private:
    char _name[5] = "test";
    char* _arguments[2] = {_name, nullptr};
    int _count = 1;
    QCoreApplication _application{_count, _arguments};
};

RetainPtr<NSDate> secondsFromNow(double seconds)
{
    return NSDate::dateWithTimeIntervalSinceReferenceDate(CFAbsoluteTimeGetCurrent() + seconds);
}

} // namespace

TEST(QtRunLoopHost, TimersFireInQtsEventLoopAndNeverEarly)
{
    Application application;
    const CFAbsoluteTime start = CFAbsoluteTimeGetCurrent();
    int calls = 0;
    bool early = false;
    NSTimer::scheduledTimerWithTimeInterval(0.004, true, [&](NSTimer* self) {
        early |= CFAbsoluteTimeGetCurrent() < self->fireDate()->timeIntervalSinceReferenceDate();
        if (++calls == 5) {
            self->invalidate();
            application->exit(7);
        }
    });
    EXPECT_EQ(application->exec(), 7);
    EXPECT_EQ(calls, 5);
    EXPECT_FALSE(early);
    EXPECT_GE(CFAbsoluteTimeGetCurrent() - start, 0.02);
}

TEST(QtRunLoopHost, TimersThatAreOlderThanTheApplicationFire)
{
    Application* application = nullptr;
    int calls = 0;
    NSTimer::scheduledTimerWithTimeInterval(0.001, false, [&](NSTimer*) {
        ++calls;
        (*application)->quit();
    });
    Application made;
    application = &made;
    made->exec();
    EXPECT_EQ(calls, 1);
}

TEST(QtRunLoopHost, TimersSurviveAnApplicationAndFireInTheNext)
{
    int calls = 0;
    RetainPtr<NSTimer> timer;
    {
        const Application first;
        timer = NSTimer::scheduledTimerWithTimeInterval(0.001, false, [&](NSTimer*) {
            ++calls;
            QCoreApplication::quit();
        });
    }
    Application second;
    second->exec();
    EXPECT_EQ(calls, 1);
}

TEST(QtRunLoopHost, NestedQtLoopFiresOtherTimersWhileOneIsBeingCalled)
{
    Application application;
    std::string log;
    const auto other = NSTimer::scheduledTimerWithTimeInterval(0.001, true, [&](NSTimer*) {
        if (log == "(")
            log += 'o';
    });
    NSTimer::scheduledTimerWithTimeInterval(0.002, true, [&](NSTimer* self) {
        log += '(';
        QEventLoop nested;
        QTimer::singleShot(20, &nested, &QEventLoop::quit);
        nested.exec();
        log += ')';
        self->invalidate();
        application->quit();
    });
    application->exec();
    other->invalidate();
    EXPECT_EQ(log, "(o)");
}

TEST(QtRunLoopHost, TimerThatWasDueDuringFireFiresAfterwards)
{
    Application application;
    int calls = 0;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(0.002, true, [&](NSTimer* self) {
        if (++calls == 1) {
            QEventLoop nested;
            QTimer::singleShot(10, &nested, &QEventLoop::quit);
            nested.exec(); // the date passes: no call within the call
            EXPECT_EQ(calls, 1);
        } else {
            self->invalidate();
            application->quit();
        }
    });
    timer->fire();
    application->exec();
    EXPECT_EQ(calls, 2);
}

TEST(QtRunLoopHost, RunLoopServesQtsEventsWhileItRuns)
{
    const Application application;
    bool served = false;
    QObject context;
    QTimer::singleShot(1, &context, [&] { served = true; });
    int calls = 0;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(0.001, true, [&](NSTimer*) { ++calls; });
    const auto limit = secondsFromNow(0.05);
    NSRunLoop::mainRunLoop()->runUntilDate(limit);
    timer->invalidate();
    EXPECT_TRUE(served);
    EXPECT_GT(calls, 0);
    EXPECT_GE(CFAbsoluteTimeGetCurrent(), limit->timeIntervalSinceReferenceDate());
}

TEST(QtRunLoopHost, RunLoopFiresOnlyTheTimersOfItsModeAndQtsLoopTheOthersAfterwards)
{
    Application application;
    std::string log;
    const auto ordinary = NSTimer::scheduledTimerWithTimeInterval(0.001, false, [&](NSTimer*) {
        log += 'd';
        application->quit();
    });
    const auto tracking = NSTimer::timerWithTimeInterval(0.002, false, [&](NSTimer*) { log += 't'; });
    NSRunLoop::mainRunLoop()->addTimer(tracking, NSEventTrackingRunLoopMode);
    NSRunLoop::mainRunLoop()->runMode(NSEventTrackingRunLoopMode, secondsFromNow(0.02).get());
    EXPECT_EQ(log, "t");
    application->exec();
    EXPECT_EQ(log, "td");
}

TEST(QtRunLoopHost, BlocksOfTheMainQueueRunInQtsEventLoop)
{
    Application application;
    int calls = 0;
    std::thread other([&] {
        dispatch_sync(dispatch_get_main_queue(), [&] { ++calls; });
        dispatch_async(dispatch_get_main_queue(), [&] {
            ++calls;
            application->quit();
        });
    });
    application->exec();
    other.join();
    EXPECT_EQ(calls, 2);
}

TEST(QtRunLoopHost, BlocksThatAreOlderThanTheApplicationRun)
{
    int calls = 0;
    dispatch_async(dispatch_get_main_queue(), [&] {
        ++calls;
        QCoreApplication::quit();
    });
    Application application;
    application->exec();
    EXPECT_EQ(calls, 1);
}

TEST(QtRunLoopHost, ManualClockFiresTimersWithoutServingQt)
{
    Application application;
    ManualClock clock;
    bool served = false;
    QObject context;
    QTimer::singleShot(0, &context, [&] { served = true; });
    int calls = 0;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(1, true, [&](NSTimer*) { ++calls; });
    clock.advance(10);
    EXPECT_EQ(calls, 10);
    EXPECT_FALSE(served);
    application->processEvents();
    EXPECT_TRUE(served);
    EXPECT_EQ(calls, 10);
    timer->invalidate();
}

TEST(QtRunLoopHost, TimersFireInTheEventLoopOfAThreadOfQts)
{
    const Application application;
    // The thread sanitizer does not see QThread::wait wait: what is counted there and read here is atomic.
    std::atomic<int> calls = 0;
    std::atomic<QThread*> firedOn = nullptr;
    class Thread : public QThread {
    public:
        Thread(std::atomic<int>& calls, std::atomic<QThread*>& firedOn)
            : _calls(calls)
            , _firedOn(firedOn)
        {
        }

    protected:
        void run() override
        {
            NSTimer::scheduledTimerWithTimeInterval(0.001, true, [this](NSTimer* self) {
                _firedOn = QThread::currentThread();
                if (++_calls == 3) {
                    self->invalidate();
                    quit();
                }
            });
            // Still waiting when the thread ends: goes with it.
            NSTimer::scheduledTimerWithTimeInterval(3600, true, [](NSTimer*) {});
            exec();
        }

    private:
        std::atomic<int>& _calls;
        std::atomic<QThread*>& _firedOn;
    } thread(calls, firedOn);
    thread.start();
    thread.wait();
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(firedOn, &thread);
}

TEST(QtRunLoopHost, OtherThreadsLoopRunsWithoutQtWhileTheApplicationLives)
{
    const Application application;
    int calls = 0;
    std::thread([&] {
        NSTimer::scheduledTimerWithTimeInterval(0.001, false, [&](NSTimer*) { ++calls; });
        NSRunLoop::currentRunLoop()->runUntilDate(secondsFromNow(3600).get());
    }).join();
    EXPECT_EQ(calls, 1);
}
