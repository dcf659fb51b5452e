#pragma once

#include "Scripted_Prompts.h"
#include "app/AppDelegate.h"

#include <QPair>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <optional>

// A started session in a private home folder, with scripted prompts and every tool run recorded.
class Test_Session {
public:
    // prepare runs in the new home folder before start-up, to lay out what start-up finds.
    explicit Test_Session(const std::function<void(const QString& home)>& prepare = {});
    ~Test_Session();

    AppDelegate* operator->() { return session.get(); }
    AppDelegate& operator*() { return *session; }

    // Opens the file and waits for its preparation: true when ready, false when it was given
    // up, nothing when the session refused it outright or the wait timed out.
    std::optional<bool> openAndWait(const QString& path, int timeoutMs = 90000);

    // Appends a segment from start to end, in percent, as the list holds it.
    void addSegment(float start, float end);
    QString workFile(const QString& name) const;
    // The runs of a tool whose arguments contain the given text.
    QList<QStringList> runsWith(const QString& text) const;

    QTemporaryDir home;
    Scripted_Prompts* prompts = nullptr;
    QList<QPair<QString, QStringList>> toolRuns;
    QList<int> exitStatuses;

private:
    std::unique_ptr<AppDelegate> session;
};

// One session at a time with a clip opened in it, kept while the same clip is asked for again.
class Clip_Session {
public:
    // The session with the file opened and prepared, or nothing when it could not be; *fresh
    // tells whether it was opened just now.
    AppDelegate* open(const QString& path, bool* fresh = nullptr);
    void reset();

    Test_Session* operator->() { return session.get(); }
    Test_Session& operator*() { return *session; }

private:
    std::unique_ptr<Test_Session> session;
    QString s_Opened;
};
