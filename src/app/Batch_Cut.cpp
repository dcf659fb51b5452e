#include "app/Batch_Cut.h"

#include "export/Export_Arguments.h"
#include "export/Fast_Cutter.h"
#include "tools/Progress.h"
#include "tools/TimeStrings.h"
#include "tools/Tool_Arguments.h"
#include "tools/Tool_Locator.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstdio>
#include <utility>

namespace {

bool Has_Audio_Stream(const QJsonDocument& streams)
{
    const QJsonArray list = streams.object().value(QStringLiteral("streams")).toArray();
    for (const QJsonValue& stream : list)
        if (stream.toObject().value(QStringLiteral("codec_type")).toString() ==
            QStringLiteral("audio"))
            return true;
    return false;
}

QString lowered(QString text)
{
    if (!text.isEmpty())
        text[0] = text.at(0).toLower();
    return text;
}

} // namespace

Batch_Cut::Batch_Cut(Batch_Cut_Request request, QString ffmpeg, QString ffprobe, QString toolPlaces)
    : request(std::move(request))
    , ffmpeg(std::move(ffmpeg))
    , ffprobe(std::move(ffprobe))
    , toolPlaces(std::move(toolPlaces))
{}

int Batch_Cut::run(QTextStream& out, QTextStream& err)
{
    QFile list(request.cutList);
    if (!list.open(QIODevice::ReadOnly)) {
        err << QStringLiteral("corvanta: cannot read the cut list %1: %2")
                   .arg(request.cutList, list.errorString())
            << Qt::endl;
        return 1;
    }
    const Cut_List_Reading reading =
        Read_Cut_List(QString::fromUtf8(list.readAll()), Cut_List_Format_For(request.cutList));
    if (reading.badLine != 0) {
        err << QStringLiteral("corvanta: line %1 of %2: %3")
                   .arg(reading.badLine)
                   .arg(request.cutList, reading.reason)
            << Qt::endl;
        return 1;
    }
    if (reading.entries.isEmpty()) {
        err << QStringLiteral("corvanta: the cut list %1 holds no cuts").arg(request.cutList)
            << Qt::endl;
        return 1;
    }
    entries = reading.entries;
    if (!request.outputFolder.isEmpty() && !QFileInfo(request.outputFolder).isDir()) {
        err << QStringLiteral("corvanta: the output folder %1 does not exist")
                   .arg(request.outputFolder)
            << Qt::endl;
        return 1;
    }

    const qsizetype count = request.files.size();
    qsizetype cut = 0;
    for (qsizetype i = 0; i < count && missingTool.isEmpty(); ++i) {
        const QString& file = request.files.at(i);
        const QString number = QStringLiteral("[%1/%2]").arg(i + 1).arg(count);
        QStringList written;
        if (const std::optional<QString> why = cutFile(file, written)) {
            err << QStringLiteral("%1 %2: not cut: %3").arg(number, file, *why) << Qt::endl;
        } else {
            ++cut;
            out << QStringLiteral("%1 %2: cut into %3")
                       .arg(number, file, written.join(QStringLiteral(", ")))
                << Qt::endl;
        }
    }
    if (!missingTool.isEmpty()) {
        const QString name = QFileInfo(missingTool).fileName();
        err << QStringLiteral("corvanta: %1 could not be started from %2; Corvanta looked for it "
                              "in %3. Install %1 and try again.")
                   .arg(name, missingTool, toolPlaces)
            << Qt::endl;
    }
    out << QStringLiteral("%1 of %2 files cut").arg(cut).arg(count)
        << (cut == count ? QStringLiteral(".") : QStringLiteral("; %1 not cut.").arg(count - cut))
        << Qt::endl;
    return cut == count ? 0 : 1;
}

std::optional<QString> Batch_Cut::cutFile(const QString& file, QStringList& written)
{
    if (!QFileInfo(file).isFile())
        return QStringLiteral("there is no such file");
    const std::optional<quint64> duration = durationSeconds(file);
    if (!duration)
        return unreadableWhy;
    // The time base is the whole seconds ffmpeg reports, as for a file the window plays itself.
    if (*duration == 0)
        return QStringLiteral("it lasts less than one second, and Corvanta measures a file in "
                              "whole seconds");
    const Cut_List_Import import = Segments_From_Cut_List(entries, {}, *duration);
    if (import.badLine != 0)
        return QStringLiteral("line %1 of %2: %3")
            .arg(import.badLine)
            .arg(request.cutList, import.reason);
    for (qsizetype i = 0; i < import.segments.size(); ++i)
        if (import.segments.at(i).f_Start == import.segments.at(i).f_End)
            return QStringLiteral("line %1 of %2: the cut is empty")
                .arg(entries.at(i).line)
                .arg(request.cutList);

    const QStringList results = targets(file, import.segments.size());
    for (const QString& target : results)
        if (QFileInfo::exists(target))
            return QStringLiteral("%1 exists, and Corvanta does not replace it").arg(target);
    // A fast cut reads the file's streams itself.
    const std::optional<bool> audio = request.fast ? std::optional(false) : hasAudio(file);
    if (!audio)
        return unreadableWhy;

    const QTemporaryDir work;
    if (!work.isValid())
        return QStringLiteral("no temporary folder could be made: %1").arg(work.errorString());
    failedRun.clear();
    QStringList made;
    if (request.fast) {
        Fast_Cut_Job job{file, {}, request.slice, work.path()};
        for (const Object_Segment& segment : import.segments)
            job.segments.append({Seconds_From_Position(*duration, segment.f_Start),
                                 Seconds_From_Position(*duration, segment.f_End)});
        Fast_Cutter cutter(job, ffmpeg, ffprobe,
                           [this](const Fast_Cut_Run& run) { return runFastTool(run); });
        if (!cutter.prepare() || !cutter.cut())
            return missingTool.isEmpty()
                       ? (cutter.problem().isEmpty() ? failedRun : cutter.problem())
                       : QStringLiteral("%1 could not be started")
                             .arg(QFileInfo(missingTool).fileName());
        made = cutter.results();
    } else {
        Segment_Cutter cutter({file, *duration, import.segments, *audio, work.path()},
                              [this](const Segment_Cut_Run& run) { return runFfmpeg(run); });
        const bool done = request.slice ? cutter.cut(1, Progress_Slice_Segment)
                                        : cutter.cut(0, Progress_Trim_Segment) && cutter.join();
        if (!done)
            return missingTool.isEmpty() ? failedRun
                                         : QStringLiteral("%1 could not be started")
                                               .arg(QFileInfo(missingTool).fileName());
        for (qsizetype i = 0; i < results.size(); ++i)
            made << (request.slice ? cutter.piecePath(static_cast<int>(i) + 1)
                                   : cutter.joinedPath());
    }
    for (qsizetype i = 0; i < results.size(); ++i) {
        // A rename never replaces a file that has appeared at the target meanwhile.
        if (!QFile::rename(made.at(i), results.at(i)))
            return QStringLiteral("%1 could not be written").arg(results.at(i));
        written << results.at(i);
    }
    return std::nullopt;
}

// The whole seconds of ffmpeg's report on the file, or nothing (unreadableWhy says why).
std::optional<quint64> Batch_Cut::durationSeconds(const QString& file)
{
    runner.setStep(QStringLiteral("reading the duration"));
    const Tool_Result result =
        runner.run(ffmpeg, Probe_Arguments(file), {Tool_Process::Output::Merged, false, true});
    if (!result.started) {
        missingTool = ffmpeg;
        unreadableWhy = QStringLiteral("ffmpeg could not be started");
        return std::nullopt;
    }
    const std::optional<QString> text = Duration_Text_From_Report(QString::fromUtf8(result.output));
    if (!text) {
        unreadableWhy = QStringLiteral("ffmpeg cannot read it (not a video or audio file?)");
        return std::nullopt;
    }
    return Return_Seconds_From_Duration_Str(*text);
}

// Whether the file has a sound stream, or nothing when ffprobe cannot tell (unreadableWhy).
std::optional<bool> Batch_Cut::hasAudio(const QString& file)
{
    runner.setStep(QStringLiteral("reading the streams"));
    const Tool_Result result = runner.run(ffprobe, Stream_Types_Arguments(file),
                                          {Tool_Process::Output::Merged, false, false});
    if (!result.started) {
        missingTool = ffprobe;
        unreadableWhy = QStringLiteral("ffprobe could not be started");
        return std::nullopt;
    }
    QJsonParseError error;
    const QJsonDocument streams = QJsonDocument::fromJson(result.output, &error);
    if (result.killed || result.exitCode != 0 || error.error != QJsonParseError::NoError) {
        unreadableWhy = QStringLiteral("ffprobe cannot read its streams");
        return std::nullopt;
    }
    return Has_Audio_Stream(streams);
}

// "<base>-cut.mp4" for a trim, "<base>-1.mp4" ... for a slice, with the extensions of the
// files the cut makes.
QStringList Batch_Cut::targets(const QString& file, qsizetype count) const
{
    const QFileInfo source(file);
    const QDir folder(request.outputFolder.isEmpty() ? source.absolutePath()
                                                     : request.outputFolder);
    const QString base = source.completeBaseName();
    // A fast cut keeps the file's own container.
    const QString extension = request.fast    ? Fast_Cut_Extension(file)
                              : request.slice ? QFileInfo(Segment_Video_Path(base, 1)).suffix()
                                              : QFileInfo(Trim_Video_Path(base)).suffix();
    if (!request.slice)
        return {folder.filePath(QStringLiteral("%1-cut.%2").arg(base, extension))};
    QStringList names;
    for (int k = 1; k <= count; ++k)
        names << folder.filePath(QStringLiteral("%1-%2.%3").arg(base).arg(k).arg(extension));
    return names;
}

bool Batch_Cut::runFfmpeg(const Segment_Cut_Run& run)
{
    runner.setStep(lowered(run.step));
    const Tool_Result result =
        runner.run(ffmpeg, run.arguments, {Tool_Process::Output::Separate, false, false});
    if (!result.started) {
        missingTool = ffmpeg;
        return false;
    }
    if (result.killed || result.exitCode != 0) {
        const Tool_Run& logged = runner.log().run(result.logEntry);
        const QString how =
            result.killed ? QStringLiteral("ffmpeg was stopped")
                          : QStringLiteral("ffmpeg ended with status %1").arg(result.exitCode);
        failedRun = QStringLiteral("%1 while %2: %3")
                        .arg(how, logged.step, logged.lastErrorLines(1).trimmed());
        return false;
    }
    return true;
}

std::optional<Tool_Result> Batch_Cut::runFastTool(const Fast_Cut_Run& run)
{
    runner.setStep(lowered(run.step));
    const Tool_Result result = runner.run(
        run.tool, run.arguments,
        {run.merged ? Tool_Process::Output::Merged : Tool_Process::Output::Separate, false, false});
    if (!result.started) {
        missingTool = run.tool;
        return std::nullopt;
    }
    if (result.killed || result.exitCode != 0) {
        const Tool_Run& logged = runner.log().run(result.logEntry);
        failedRun = QStringLiteral("%1 ended with status %2 while %3: %4")
                        .arg(QFileInfo(run.tool).fileName())
                        .arg(result.exitCode)
                        .arg(logged.step, logged.lastErrorLines(1).trimmed());
    }
    return result;
}

int Run_Batch_Cut(const Batch_Cut_Request& request)
{
    // Every tool run would be logged on standard error; one line per file says enough here.
    QLoggingCategory::setFilterRules(QStringLiteral("default.info=false"));
    const QString folder = QCoreApplication::applicationDirPath();
    Batch_Cut batch(request, Locate_Tool(QStringLiteral("ffmpeg"), folder),
                    Locate_Tool(QStringLiteral("ffprobe"), folder),
                    Tool_Search_Places_Text(folder));
    QTextStream out(stdout);
    QTextStream err(stderr);
    return batch.run(out, err);
}
