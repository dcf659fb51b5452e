#pragma once

#include <QString>
#include <QStringList>

// The video extensions the open panels show, in order.
const QStringList& Accepted_Video_Extensions();

// The drop target's rule: the lower-cased extension and a ";" found anywhere in
// "wmv;mov;...;mjpg;". A substring test on purpose: "v" and "pg" pass, and so does a file
// without an extension (";" alone).
bool Drop_Extension_Accepted(const QString& path);

// The source's file name without its extension, every blank turned into "_".
QString Work_File_Base_Name(const QString& source);

QString Working_Copy_Path(const QString& workFolder, const QString& source); // "%@/%@.mpg"
QString Sound_File_Path(const QString& workFolder, const QString& source);   // "%@/%@.wav"
QString Spectrum_File_Path(const QString& workFolder, qint32 index); // "%@/Spectrum%04d.png"
