#include "app/Media_Files.h"

#include <QFileInfo>

const QStringList& Accepted_Video_Extensions()
{
    static const QStringList extensions = {
        QStringLiteral("wmv"), QStringLiteral("mov"), QStringLiteral("mpg"), QStringLiteral("mpeg"),
        QStringLiteral("mpe"), QStringLiteral("avi"), QStringLiteral("asf"), QStringLiteral("asx"),
        QStringLiteral("qt"),  QStringLiteral("mp4"), QStringLiteral("m4v"), QStringLiteral("flv"),
        QStringLiteral("ts"),  QStringLiteral("3gp"), QStringLiteral("fli"), QStringLiteral("m1v"),
        QStringLiteral("m2v"), QStringLiteral("mjpg")};
    return extensions;
}

bool Drop_Extension_Accepted(const QString& path)
{
    static const QString dropList = Accepted_Video_Extensions().join(u';') + u';';
    return dropList.contains(QFileInfo(path).suffix().toLower() + u';');
}

QString Work_File_Base_Name(const QString& source)
{
    return QFileInfo(source).completeBaseName().replace(u' ', u'_');
}

QString Working_Copy_Path(const QString& workFolder, const QString& source)
{
    return QStringLiteral("%1/%2.mpg").arg(workFolder, Work_File_Base_Name(source));
}

QString Sound_File_Path(const QString& workFolder, const QString& source)
{
    return QStringLiteral("%1/%2.wav").arg(workFolder, Work_File_Base_Name(source));
}

QString Spectrum_File_Path(const QString& workFolder, qint32 index)
{
    return QStringLiteral("%1/Spectrum%2.png").arg(workFolder).arg(index, 4, 10, QLatin1Char('0'));
}
