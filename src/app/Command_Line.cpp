#include "app/Command_Line.h"

#include <QCommandLineParser>
#include <QFileInfo>

#include <cstring>

namespace {

const QString usage = QStringLiteral(
    "Usage: corvanta [options] [FILE]\n"
    "       corvanta --cut-list LIST [--slice] [--fast] [--output-dir DIR] FILE...\n");

enum Option { Help, Version, Cut_List, Slice, Fast, Output_Dir };

const QList<QCommandLineOption>& options()
{
    static const QList<QCommandLineOption> list = {
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help and end.")},
        {{QStringLiteral("v"), QStringLiteral("version")},
         QStringLiteral("Show the version and end.")},
        {QStringLiteral("cut-list"),
         QStringLiteral("Cut each FILE by LIST (CSV, or EDL), without a window."),
         QStringLiteral("LIST")},
        {QStringLiteral("slice"),
         QStringLiteral("With --cut-list: a file per cut, not the cuts joined.")},
        {QStringLiteral("fast"),
         QStringLiteral("With --cut-list: cut as Fast Trim and Fast Slice do, in the file's "
                        "own format, copying what need not be re-encoded.")},
        {QStringLiteral("output-dir"),
         QStringLiteral("With --cut-list: write into DIR instead of beside each FILE."),
         QStringLiteral("DIR")}};
    return list;
}

const QCommandLineOption& option(Option which)
{
    return options().at(which);
}

const int nameColumn = 18;

QString helpText(const QString& shortcutsPage)
{
    QString text = usage;
    text += QStringLiteral("Cut video and audio files into segments, and join or export them with "
                           "ffmpeg.\n\nArguments:\n");
    text += QStringLiteral("  %1%2\n")
                .arg(QStringLiteral("FILE"), -nameColumn)
                .arg(QStringLiteral("A file to open; with --cut-list, the files to cut."));
    text += QStringLiteral("\nOptions:\n");
    for (const QCommandLineOption& option : options()) {
        QStringList names;
        for (const QString& name : option.names())
            names << (name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name;
        QString shown = names.join(QStringLiteral(", "));
        if (!option.valueName().isEmpty())
            shown += u' ' + option.valueName();
        text += QStringLiteral("  %1%2\n").arg(shown, -nameColumn).arg(option.description());
    }
    text += QStringLiteral("\nThe keyboard shortcuts are listed in the user guide:\n  %1\n")
                .arg(shortcutsPage);
    return text;
}

Command_Line failure(const QString& complaint)
{
    Command_Line result;
    result.startWindow = false;
    result.errors = QStringLiteral("corvanta: %1\n").arg(complaint) + usage +
                    QStringLiteral("Try 'corvanta --help' for more information.\n");
    result.exitStatus = 2;
    return result;
}

Command_Line answer(const QString& output)
{
    Command_Line result;
    result.startWindow = false;
    result.output = output;
    return result;
}

QString absolute(const QString& path)
{
    return QFileInfo(path).absoluteFilePath();
}

Command_Line batchCut(const QCommandLineParser& parser)
{
    const QStringList files = parser.positionalArguments();
    if (parser.value(option(Cut_List)).isEmpty())
        return failure(QStringLiteral("--cut-list needs the path of a LIST."));
    if (parser.isSet(option(Output_Dir)) && parser.value(option(Output_Dir)).isEmpty())
        return failure(QStringLiteral("--output-dir needs the path of a DIR."));
    if (files.isEmpty())
        return failure(QStringLiteral("--cut-list needs at least one FILE to cut."));
    Batch_Cut_Request request;
    request.cutList = absolute(parser.value(option(Cut_List)));
    request.slice = parser.isSet(option(Slice));
    request.fast = parser.isSet(option(Fast));
    if (parser.isSet(option(Output_Dir)))
        request.outputFolder = absolute(parser.value(option(Output_Dir)));
    for (const QString& file : files)
        request.files << absolute(file);
    Command_Line result;
    result.startWindow = false;
    result.batchCut = request;
    return result;
}

} // namespace

QString Corvanta_Version()
{
    return QStringLiteral(CORVANTA_VERSION);
}

bool Asks_For_Batch_Cut(int argc, const char* const* argv)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--") == 0)
            return false;
        if (std::strcmp(argv[i], "--cut-list") == 0 ||
            std::strncmp(argv[i], "--cut-list=", 11) == 0)
            return true;
    }
    return false;
}

Command_Line Parse_Command_Line(const QStringList& arguments, const QString& shortcutsPage)
{
    QCommandLineParser parser;
    parser.addOptions(options());
    if (!parser.parse(arguments))
        return failure(parser.errorText());
    if (parser.isSet(option(Help)))
        return answer(helpText(shortcutsPage));
    if (parser.isSet(option(Version)))
        return answer(QStringLiteral("corvanta %1\n").arg(Corvanta_Version()));
    if (parser.isSet(option(Cut_List)))
        return batchCut(parser);
    if (parser.isSet(option(Slice)) || parser.isSet(option(Fast)) ||
        parser.isSet(option(Output_Dir)))
        return failure(QStringLiteral("--slice, --fast and --output-dir go with --cut-list."));

    const QStringList files = parser.positionalArguments();
    if (files.size() > 1)
        return failure(QStringLiteral("Only one FILE can be opened at a time."));
    Command_Line result;
    if (!files.isEmpty())
        result.file = absolute(files.first());
    return result;
}
