#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QString>

#include <atomic>
#include <mutex>
#include <thread>

// Says what the GUI thread was doing while it stalled: a watch thread takes the GUI thread's
// call stack (by a signal whose handler records it) every few milliseconds once the event loop
// has not turned for a while, and the stacks of each long stall are kept for the report.
class Stall_Sampler {
public:
    Stall_Sampler(); // on the GUI thread
    ~Stall_Sampler();
    Stall_Sampler(const Stall_Sampler&) = delete;
    Stall_Sampler& operator=(const Stall_Sampler&) = delete;

    // GUI thread: the event loop turned; the stall it ends, `stalled` ms long, is kept when
    // it lasted more than `longer` ms.
    void turned(qint64 stalled, qint64 longer);
    // Stops sampling; each stall, with its distinct stacks symbolised, most frequent first.
    QString report();

private:
    using Stack = QList<quintptr>;
    struct Stall {
        qint64 at = 0;
        qint64 length = 0;
        QList<Stack> stacks;
    };
    void watch();

    QElapsedTimer clock;
    std::atomic<qint64> lastTurn{0}; // ms on the clock
    std::atomic<bool> stopping{false};
    std::mutex lock;
    QList<Stack> pending; // taken since the last turn
    QList<Stall> stalls;
    std::thread watcher;
};
