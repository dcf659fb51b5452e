#include "player/Preview_Thread.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QThread>

#include <gst/gst.h>

namespace {

// Calls queued to `context` run on `thread`, in order. At exit, the calls already queued (a
// pipeline being stopped) run before the thread ends, unless they take too long.
class Gst_Worker {
public:
    Gst_Worker()
    {
        thread.setObjectName(QStringLiteral("GStreamer"));
        context.moveToThread(&thread);
        thread.start();
        run([] {
            if (!gst_is_initialized())
                gst_init(nullptr, nullptr);
        });
    }
    ~Gst_Worker()
    {
        run([this] { thread.quit(); });
        if (!thread.wait(QDeadlineTimer(2000))) {
            thread.quit(); // what is left queued is not waited for
            thread.wait();
        }
    }
    Gst_Worker(const Gst_Worker&) = delete;
    Gst_Worker& operator=(const Gst_Worker&) = delete;

    void run(std::function<void()> call)
    {
        QMetaObject::invokeMethod(&context, std::move(call), Qt::QueuedConnection);
    }

private:
    QThread thread;
    QObject context;
};

Gst_Worker& worker()
{
    static Gst_Worker instance;
    return instance;
}

} // namespace

void Preview_Thread::start()
{
    worker();
}

void Preview_Thread::run(std::function<void()> call)
{
    worker().run(std::move(call));
}
