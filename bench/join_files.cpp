// Joins files the way Join Files does, without a window: probes each file with ffprobe, asks
// the planner, writes its list and runs its one ffmpeg command.
// Usage: bench_join_files FFMPEG WORK_FOLDER OUTPUT FILE...
#include "export/Join_Planner.h"
#include "tools/Tool_Process.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() < 6) {
        std::fprintf(stderr, "usage: bench_join_files FFMPEG WORK_FOLDER OUTPUT FILE FILE...\n");
        return 2;
    }
    const QString ffmpeg = arguments.at(1);
    const QString ffprobe = Locate_Ffprobe(ffmpeg, QCoreApplication::applicationDirPath());
    QList<Media_Info> files;
    for (const QString& path : arguments.mid(4)) {
        const Media_Probe_Result probe = Probe_Media_File(ffprobe, path);
        if (!probe.info) {
            std::fprintf(stderr, "%s: %s\n", qUtf8Printable(path),
                         probe.toolStarted ? qUtf8Printable(probe.refusal)
                                           : "ffprobe could not be started");
            return 1;
        }
        files << *probe.info;
    }
    const Join_Planner plan(files);
    std::printf("%s\n", qUtf8Printable(plan.reason()));
    const QString list = QDir(arguments.at(2)).filePath(QStringLiteral("join-files-list.txt"));
    QFile listFile(list);
    if (!listFile.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        listFile.write(plan.concatList().toUtf8()) < 0)
        return 1;
    listFile.close();
    Tool_Process process;
    process.start(ffmpeg, plan.arguments(list, arguments.at(3)), Tool_Process::Output::Separate);
    process.waitForEnd();
    if (process.failedToStart() || process.exitCode() != 0) {
        std::fprintf(stderr, "ffmpeg failed: %s\n", process.errorTail().right(600).constData());
        return 1;
    }
    return 0;
}
