#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// --cut-list: files to cut by one list of cuts, without a window. Every path is absolute.
struct Batch_Cut_Request {
    QString cutList;
    bool slice = false;   // one file per cut instead of the cuts joined into one
    bool fast = false;    // cut as Fast Trim / Fast Slice: the file's own format, copied
    QString outputFolder; // empty: beside each file
    QStringList files;    // in the order given
};

// What the command line asks for: the window (with FILE when one is given), files to cut
// without a window, or a text to print and a status to end with before any window opens.
struct Command_Line {
    bool startWindow = true;
    // Absolute; it may name a file that does not exist, which the window then reports.
    QString file;
    // Set (with startWindow false) when the files are to be cut without a window.
    std::optional<Batch_Cut_Request> batchCut;
    // For standard output: the help or the version.
    QString output;
    // For standard error: a one-line complaint followed by the usage.
    QString errors;
    int exitStatus = 0;
};

// The version the build sets (the CMake project's version).
QString Corvanta_Version();

// Whether the program's arguments ask for cutting without a window (--cut-list before any
// "--"), which must be known before a QApplication connects to a display.
bool Asks_For_Batch_Cut(int argc, const char* const* argv);

// Parses ARGUMENTS, the program's name first and Qt's own options already taken out.
// SHORTCUTS_PAGE is the help page listing the keyboard shortcuts, which --help names.
Command_Line Parse_Command_Line(const QStringList& arguments, const QString& shortcutsPage);
