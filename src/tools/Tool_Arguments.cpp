#include "tools/Tool_Arguments.h"

#include <QFileInfo>

QStringList Probe_Arguments(const QString& media)
{
    return {QStringLiteral("-i"), media};
}

QStringList Stream_Types_Arguments(const QString& media)
{
    return {QStringLiteral("-v"),
            QStringLiteral("quiet"),
            QStringLiteral("-show_entries"),
            QStringLiteral("stream=codec_type"),
            QStringLiteral("-of"),
            QStringLiteral("json"),
            media};
}

QStringList Dvd_Form_Options()
{
    return {QStringLiteral("-target"), QStringLiteral("ntsc-dvd"), QStringLiteral("-acodec"),
            QStringLiteral("ac3"),     QStringLiteral("-ar"),      QStringLiteral("44100"),
            QStringLiteral("-ac"),     QStringLiteral("2")};
}

QStringList Working_Copy_Arguments(const QString& source, const QString& mpg)
{
    return QStringList{QStringLiteral("-i"), source} + Dvd_Form_Options() + QStringList{mpg};
}

QStringList Sound_Extraction_Arguments(const QString& source, const QString& wav)
{
    return {QStringLiteral("-i"),
            source,
            QStringLiteral("-acodec"),
            QStringLiteral("pcm_s16le"),
            QStringLiteral("-ar"),
            QStringLiteral("44100"),
            QStringLiteral("-ac"),
            QStringLiteral("2"),
            wav};
}

QStringList Waveform_Arguments(const QString& audio, const QString& png)
{
    return {QStringLiteral("-i"),
            audio,
            QStringLiteral("-filter_complex"),
            QStringLiteral("showwavespic=colors=#1c99d5"),
            QStringLiteral("-vframes"),
            QStringLiteral("1"),
            png};
}

QStringList Thumbnail_Arguments(const QString& timeStamp, const QString& source,
                                const QString& bitmap)
{
    return {
        QStringLiteral("-ss"), timeStamp, QStringLiteral("-i"), source, QStringLiteral("-vframes"),
        QStringLiteral("1"),   bitmap};
}

QString Thumbnail_Bitmap_Path(const QString& workFolder, const QString& source)
{
    return QStringLiteral("%1/%2.bmp").arg(workFolder, QFileInfo(source).fileName());
}
