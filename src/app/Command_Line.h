#pragma once

#include <QString>
#include <QStringList>

// What the command line asks for: the window (with FILE when one is given), or a text to print
// and a status to end with before any window opens.
struct Command_Line {
    bool startWindow = true;
    // Absolute; it may name a file that does not exist, which the window then reports.
    QString file;
    // For standard output: the help or the version.
    QString output;
    // For standard error: a one-line complaint followed by the usage.
    QString errors;
    int exitStatus = 0;
};

// The version the build sets (the CMake project's version).
QString Corvanta_Version();

// Parses ARGUMENTS, the program's name first and Qt's own options already taken out.
// SHORTCUTS_PAGE is the help page listing the keyboard shortcuts, which --help names.
Command_Line Parse_Command_Line(const QStringList& arguments, const QString& shortcutsPage);
