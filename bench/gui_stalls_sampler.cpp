#include "gui_stalls_sampler.h"

#include <QHash>
#include <QMap>
#include <QProcess>

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <pthread.h>
#include <signal.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>

namespace {

// Filled by the signal handler on the GUI thread, read by the watch thread once `taken` is set.
constexpr int Max_Depth = 256;
void* handlerFrames[Max_Depth];
std::atomic<int> handlerDepth{0};
std::atomic<bool> taken{false};
pthread_t guiThread;

constexpr qint64 Sample_After = 10; // ms without a turn of the event loop
constexpr auto Sample_Every = std::chrono::milliseconds(2);

void takeStack(int)
{
    handlerDepth.store(backtrace(handlerFrames, Max_Depth), std::memory_order_relaxed);
    taken.store(true, std::memory_order_release);
}

QString demangled(const char* name)
{
    int status = 0;
    char* plain = abi::__cxa_demangle(name, nullptr, nullptr, &status);
    const QString text = QString::fromLatin1(status == 0 && plain ? plain : name);
    std::free(plain);
    return text;
}

// Names each address: by the dynamic symbol table, else by addr2line from the debug information.
QHash<quintptr, QString> namesOf(const QList<quintptr>& addresses)
{
    QHash<quintptr, QString> names;
    QMap<QString, QList<quintptr>> unnamed; // file -> addresses
    QHash<quintptr, quintptr> offsets;
    for (const quintptr address : addresses) {
        Dl_info info{};
        if (!dladdr(reinterpret_cast<void*>(address), &info) || !info.dli_fname) {
            names.insert(address, QStringLiteral("0x%1").arg(address, 0, 16));
            continue;
        }
        const QString file = QString::fromLocal8Bit(info.dli_fname).section(QLatin1Char('/'), -1);
        if (info.dli_sname) {
            names.insert(address, demangled(info.dli_sname) + QStringLiteral(" (%1)").arg(file));
            continue;
        }
        offsets.insert(address, address - reinterpret_cast<quintptr>(info.dli_fbase));
        unnamed[QString::fromLocal8Bit(info.dli_fname)].append(address);
        names.insert(address, QStringLiteral("? (%1)").arg(file));
    }
    for (auto file = unnamed.cbegin(); file != unnamed.cend(); ++file) {
        QStringList arguments{QStringLiteral("-f"), QStringLiteral("-C"), QStringLiteral("-e"),
                              file.key()};
        for (const quintptr address : file.value())
            arguments << QStringLiteral("0x%1").arg(offsets.value(address) - 1, 0, 16);
        QProcess addr2line;
        addr2line.start(QStringLiteral("addr2line"), arguments);
        addr2line.waitForFinished();
        const QStringList lines =
            QString::fromLocal8Bit(addr2line.readAllStandardOutput()).split(QLatin1Char('\n'));
        for (int i = 0; i < file.value().size() && 2 * i + 1 < lines.size(); ++i) {
            if (lines.at(2 * i) != QLatin1String("??"))
                names.insert(file.value().at(i),
                             lines.at(2 * i) + QStringLiteral(" at ") +
                                 lines.at(2 * i + 1).section(QLatin1Char('/'), -1));
        }
    }
    return names;
}

} // namespace

Stall_Sampler::Stall_Sampler()
{
    guiThread = pthread_self();
    void* warm[4];
    backtrace(warm, 4); // loads the unwinder now, not inside the handler
    struct sigaction action {};
    action.sa_handler = takeStack;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(SIGPROF, &action, nullptr);
    clock.start();
    watcher = std::thread([this] { watch(); });
}

Stall_Sampler::~Stall_Sampler()
{
    stopping = true;
    if (watcher.joinable())
        watcher.join();
}

void Stall_Sampler::turned(qint64 stalled, qint64 longer)
{
    lastTurn = clock.elapsed();
    const std::lock_guard<std::mutex> guard(lock);
    if (stalled > longer)
        stalls.append({lastTurn - stalled, stalled, pending});
    pending.clear();
}

void Stall_Sampler::watch()
{
    while (!stopping) {
        std::this_thread::sleep_for(Sample_Every);
        if (clock.elapsed() - lastTurn < Sample_After)
            continue;
        taken = false;
        pthread_kill(guiThread, SIGPROF);
        for (int wait = 0; wait < 200 && !taken.load(std::memory_order_acquire); ++wait)
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        if (!taken)
            continue;
        // The first two frames are the handler and the signal's return path.
        Stack stack;
        for (int i = 2; i < handlerDepth; ++i)
            stack.append(reinterpret_cast<quintptr>(handlerFrames[i]));
        const std::lock_guard<std::mutex> guard(lock);
        pending.append(stack);
    }
}

QString Stall_Sampler::report()
{
    stopping = true;
    if (watcher.joinable())
        watcher.join();
    QList<quintptr> addresses;
    for (const Stall& stall : stalls)
        for (const Stack& stack : stall.stacks)
            addresses << stack;
    std::sort(addresses.begin(), addresses.end());
    addresses.erase(std::unique(addresses.begin(), addresses.end()), addresses.end());
    const QHash<quintptr, QString> names = namesOf(addresses);

    QString text;
    for (const Stall& stall : stalls) {
        text += QStringLiteral("stall of %1 ms at %2 s, %3 samples\n")
                    .arg(stall.length)
                    .arg(stall.at / 1000.0, 0, 'f', 1)
                    .arg(stall.stacks.size());
        // Neither thread ran, or the GUI thread slept past its timer: no processor was free.
        if (stall.stacks.isEmpty() ||
            std::all_of(stall.stacks.cbegin(), stall.stacks.cend(), [&](const Stack& stack) {
                return !stack.isEmpty() &&
                       names.value(stack.first()).startsWith(QLatin1String("poll "));
            }))
            text += QStringLiteral("  the process was waiting for a processor, not working\n");
        // Each stack up to the event loop's dispatch, counted by how often it was seen.
        QMap<QStringList, int> seen;
        for (const Stack& stack : stall.stacks) {
            QStringList frames;
            for (const quintptr address : stack) {
                const QString name = names.value(address);
                if (name.contains(QLatin1String("g_main_context_dispatch")) ||
                    name.contains(QLatin1String("QEventDispatcherUNIX::processEvents")))
                    break;
                frames << name;
            }
            ++seen[frames];
        }
        QList<std::pair<int, QStringList>> ranked;
        for (auto entry = seen.cbegin(); entry != seen.cend(); ++entry)
            ranked.append({entry.value(), entry.key()});
        std::sort(ranked.begin(), ranked.end(),
                  [](const auto& a, const auto& b) { return a.first > b.first; });
        for (int i = 0; i < std::min<qsizetype>(3, ranked.size()); ++i) {
            text += QStringLiteral("  %1 of them:\n").arg(ranked.at(i).first);
            // A deep stack keeps its top, where the time goes, and its bottom, which says why.
            QStringList frames = ranked.at(i).second;
            if (frames.size() > 36)
                frames = frames.mid(0, 12) + QStringList{QStringLiteral("...")} +
                         frames.mid(frames.size() - 24);
            for (const QString& frame : frames)
                text += QStringLiteral("    %1\n").arg(frame);
        }
    }
    return text;
}
