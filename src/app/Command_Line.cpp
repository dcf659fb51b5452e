#include "app/Command_Line.h"

#include <QCommandLineParser>
#include <QFileInfo>

namespace {

const QString usage = QStringLiteral("Usage: corvanta [options] [FILE]\n");

const QList<QCommandLineOption>& options()
{
    static const QList<QCommandLineOption> list = {
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help and end.")},
        {{QStringLiteral("v"), QStringLiteral("version")},
         QStringLiteral("Show the version and end.")}};
    return list;
}

QString helpText(const QString& shortcutsPage)
{
    QString text = usage;
    text += QStringLiteral("Cut video and audio files into segments, and join or export them with "
                           "ffmpeg.\n\nArguments:\n");
    text += QStringLiteral("  %1%2\n")
                .arg(QStringLiteral("FILE"), -16)
                .arg(QStringLiteral("A video or audio file to open in the window."));
    text += QStringLiteral("\nOptions:\n");
    for (const QCommandLineOption& option : options()) {
        QStringList names;
        for (const QString& name : option.names())
            names << (name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name;
        text += QStringLiteral("  %1%2\n")
                    .arg(names.join(QStringLiteral(", ")), -16)
                    .arg(option.description());
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

} // namespace

QString Corvanta_Version()
{
    return QStringLiteral(CORVANTA_VERSION);
}

Command_Line Parse_Command_Line(const QStringList& arguments, const QString& shortcutsPage)
{
    QCommandLineParser parser;
    parser.addOptions(options());
    if (!parser.parse(arguments))
        return failure(parser.errorText());
    if (parser.isSet(options().at(0)))
        return answer(helpText(shortcutsPage));
    if (parser.isSet(options().at(1)))
        return answer(QStringLiteral("corvanta %1\n").arg(Corvanta_Version()));

    const QStringList files = parser.positionalArguments();
    if (files.size() > 1)
        return failure(QStringLiteral("Only one FILE can be opened at a time."));
    Command_Line result;
    if (!files.isEmpty())
        result.file = QFileInfo(files.first()).absoluteFilePath();
    return result;
}
