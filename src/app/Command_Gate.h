#pragma once

#include <QObject>
#include <QString>

// Lets one command run at a time. A command holds the gate for as long as it runs (a Scope
// around a synchronous command, or begin()/end() around one that goes on through timers);
// a file offered meanwhile waits (the last one offered wins) and is handed out when it is free.
class Command_Gate : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    bool isBusy() const { return i_Depth > 0; }
    void begin();
    void end();
    // Keeps a file to open once the running command has finished.
    void deferOpen(const QString& path) { s_Deferred_File = path; }
    const QString& deferredFile() const { return s_Deferred_File; }

    class Scope {
    public:
        explicit Scope(Command_Gate& gate)
            : held(gate)
        {
            held.begin();
        }
        ~Scope() { held.end(); }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        Command_Gate& held;
    };

signals:
    void busyChanged(bool busy);
    // The gate is free and a file waited for it; the receiver opens it (and so takes the gate).
    void deferredOpenReady(const QString& path);

private:
    int i_Depth = 0;
    QString s_Deferred_File;
};
