#pragma once

#include <QImage>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

class QProcess;
class Tool_Log;

// Thumbnails at the times a zoomed timeline shows, made by ffmpeg one after another in the
// background: nothing waits for it. Each run is kept in the tool log. Asking for other times
// drops the wishes not yet started; what was made is kept for the file.
class Zoom_Thumbnails : public QObject {
    Q_OBJECT
public:
    explicit Zoom_Thumbnails(Tool_Log& log, QObject* parent = nullptr);
    ~Zoom_Thumbnails() override;

    // The frames wanted now, in milliseconds of the source, written through `image`.
    void want(const QString& ffmpeg, const QString& source, const QString& image,
              const QList<qint64>& milliseconds);
    // The thumbnail made nearest to a time, if any.
    const QImage* nearest(qint64 milliseconds) const;
    bool has(qint64 milliseconds) const { return images.contains(milliseconds); }
    bool idle() const { return !process && queue.isEmpty(); }
    // A new file: everything made is forgotten, the run under way dropped.
    void clear();

signals:
    void made();

private:
    void next();
    void ended(int number, qint64 milliseconds);

    Tool_Log& log;
    QString tool;
    QString file;
    QString bitmap;
    QList<qint64> queue;
    QMap<qint64, QImage> images;
    QProcess* process = nullptr;
};
