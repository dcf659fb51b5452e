// How long the window stops answering while a clip is opened, its thumbnails and waveform are
// made, and the timeline is clicked every 300 ms: (a) the longest time the event loop does not
// turn, (b) the longest time from a click's due moment to the playhead drawn at that place.
// Usage: bench_gui_stalls CLIP [SECONDS]
#include "gui_stalls_sampler.h"

#include "app/AppDelegate.h"
#include "app/MainWindow.h"
#include "timeline/View_Video_Timeline.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

// Times the first paint of the timeline after each click, from the moment the click was due.
class Paint_Watch : public QObject {
public:
    qint64 pendingDue = -1;
    QList<qint64> answers;
    const QElapsedTimer* clock = nullptr;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && pendingDue >= 0) {
            answers.append(clock->elapsed() - pendingDue);
            pendingDue = -1;
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    if (argc < 2) {
        std::fputs("usage: bench_gui_stalls CLIP [SECONDS]\n", stderr);
        return 2;
    }
    const QString clip = QString::fromLocal8Bit(argv[1]);
    const int seconds = argc > 2 ? std::atoi(argv[2]) : 30;
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());

    AppDelegate session;
    session.applicationDidFinishLaunching();
    session.window->resize(1280, 800);

    // CORVANTA_BENCH_TRACE=1 names each stall, to read beside the tool log's lines, and says
    // at the end what the GUI thread was doing during each one.
    const bool trace = qEnvironmentVariableIsSet("CORVANTA_BENCH_TRACE");
    std::unique_ptr<Stall_Sampler> sampler;
    if (trace)
        sampler = std::make_unique<Stall_Sampler>();
    QElapsedTimer clock;
    clock.start();
    qint64 lastTick = 0;
    qint64 longestStall = 0;
    QTimer heartbeat;
    heartbeat.setInterval(5);
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        const qint64 now = clock.elapsed();
        longestStall = std::max(longestStall, now - lastTick);
        if (sampler)
            sampler->turned(now - lastTick, 40);
        if (trace && now - lastTick > 40)
            qInfo("stall of %lld ms at %.1f s", now - lastTick, now / 1000.0);
        lastTick = now;
    });
    heartbeat.start();

    Paint_Watch watch;
    watch.clock = &clock;
    session.viewTimeline->installEventFilter(&watch);
    int clicks = 0;
    QTimer clicker;
    clicker.setInterval(300);
    clicker.setTimerType(Qt::PreciseTimer);
    qint64 firstDue = 0; // clicks start once the file is ready: before, they do nothing
    QObject::connect(&clicker, &QTimer::timeout, [&] {
        // Each click is due 300 ms after the last; a late timer counts against the window.
        const qint64 due = firstDue + 300 * clicks;
        View_Video_Timeline* timeline = session.viewTimeline;
        const QPointF at(timeline->width() * (0.1 + 0.8 * ((clicks * 37) % 100) / 100.0),
                         timeline->height() / 2.0);
        QMouseEvent press(QEvent::MouseButtonPress, at, timeline->mapToGlobal(at), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QMouseEvent release(QEvent::MouseButtonRelease, at, timeline->mapToGlobal(at),
                            Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(timeline, &press);
        QApplication::sendEvent(timeline, &release);
        // A click the timer brings a little early counts from when it came.
        watch.pendingDue = std::min(due, clock.elapsed());
        ++clicks;
    });
    QObject::connect(&session, &AppDelegate::preparationFinished, [&] {
        firstDue = clock.elapsed() + 300;
        clicker.start();
    });
    QTimer::singleShot(0, [&] { session.Open_When_Idle(clip); });
    // Reported from the event loop itself: a nested wait (a long tool run) may be under way.
    QTimer::singleShot(seconds * 1000, [&] {
        QList<qint64>& answers = watch.answers;
        std::sort(answers.begin(), answers.end());
        const qint64 median = answers.isEmpty() ? -1 : answers.at(answers.size() / 2);
        const qint64 longest = answers.isEmpty() ? -1 : answers.constLast();
        std::printf("%s: %d clicks in %d s; longest stall %lld ms; click to playhead: median "
                    "%lld ms, longest %lld ms (goal: stall and longest at most 50 ms)\n",
                    qUtf8Printable(clip), clicks, seconds, longestStall, median, longest);
        if (sampler)
            std::printf("%s", qUtf8Printable(sampler->report()));
        session.exitProcess(0);
    });
    return QApplication::exec();
}
