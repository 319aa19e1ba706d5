#include "Foundation/RunLoop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimerEvent>

#include <cmath>

namespace {

/// Wakes a run loop out of the Qt event loop of its thread, nested ones included.
class QtRunLoopHost final : public QObject, public RunLoopHost {
public:
    explicit QtRunLoopHost(RunLoopCore& core)
        : _core(core)
    {
    }

    void wakeIn(CFTimeInterval seconds) override
    {
        stopTimer();
        // Qt counts whole milliseconds. Rounded up, since who wakes early has to wait again; the hundredth is
        // for lengths that are whole but for their rounding.
        const int milliseconds = std::max(0, static_cast<int>(std::ceil(seconds * 1000 - 0.01)));
        _timer = startTimer(milliseconds, Qt::PreciseTimer);
    }
    void wakeSoon() override { QCoreApplication::postEvent(this, new QEvent(QEvent::User)); }
    void serveEvents() override
    {
        if (QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance())
            dispatcher->processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        stopTimer();
        _core.hostWoke();
    }
    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        _core.turn();
        return true;
    }

private:
    void stopTimer()
    {
        if (_timer)
            killTimer(_timer);
        _timer = 0;
    }

    RunLoopCore& _core;
    int _timer = 0;
};

void applicationEnds()
{
    RunLoopCore::current().detachHost();
}

/// Qt calls this for every QCoreApplication, once its event loop can take timers.
void applicationStarts()
{
    qAddPostRoutine(applicationEnds);
    RunLoopCore::current().attachHost();
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(applicationStarts)

std::unique_ptr<RunLoopHost> RunLoopHost::make(RunLoopCore& core)
{
    if (!QAbstractEventDispatcher::instance())
        return nullptr;
    return std::make_unique<QtRunLoopHost>(core);
}
