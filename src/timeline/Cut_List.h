#pragma once

#include "timeline/Segment_List.h"

#include <QList>
#include <QString>

// A list of cuts kept in a file: CSV ("12.345,20.000,intro": start and end in seconds, an
// optional label) or a plain EDL as media players read it ("12.345 20 0", '#' comments).
struct Cut_Entry {
    double start = 0.0; // seconds
    double end = 0.0;
    QString label;
    int line = 0; // where it stood in the file, from 1
};

enum class Cut_List_Format { Csv, Edl };

// EDL for a name ending in ".edl" (any case), else CSV.
Cut_List_Format Cut_List_Format_For(const QString& path);

struct Cut_List_Reading {
    QList<Cut_Entry> entries;
    int badLine = 0; // the first line that could not be read, from 1; 0 when all could
    QString reason;
};

Cut_List_Reading Read_Cut_List(const QString& text, Cut_List_Format format);
QString Write_Cut_List(const QList<Cut_Entry>& entries, Cut_List_Format format);

// The segments' times in a file of D whole seconds, in list order.
QList<Cut_Entry> Cut_Entries_From_Segments(const Segment_List& segments, quint64 durationSeconds);

struct Cut_List_Import {
    Segment_List segments; // the existing ones followed by the imported ones
    int badLine = 0;       // the first entry that cannot be a segment, by its line; 0 when all can
    QString reason;
};

// Appends the entries to the existing segments as positions of a file of D whole seconds. An
// entry whose start is after its end, that ends beyond the file, or whose start or end lies
// inside a segment already there (the rule for adding one) refuses the whole list.
Cut_List_Import Segments_From_Cut_List(const QList<Cut_Entry>& entries,
                                       const Segment_List& existing, quint64 durationSeconds);
