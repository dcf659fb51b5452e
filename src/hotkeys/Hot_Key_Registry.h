#pragma once

#include "hotkeys/Object_Shortcut.h"

#include <QString>
#include <map>

#include <functional>
#include <memory>
#include <optional>

// The system's hot-key service, as the registry needs it: one common handler for all hot keys,
// and the registration of single keys with the number they are dispatched by.
class Hot_Key_Service {
public:
    virtual ~Hot_Key_Service() = default;
    virtual bool installHandler() = 0;
    virtual void removeHandler() = 0;
    virtual bool registerHotKey(const Object_Shortcut& shortcut, quint32 number) = 0;
    virtual void unregisterHotKey(quint32 number) = 0;
};

// One registered hot key; unregistered when destroyed.
class Object_Shortcut_Hot_Key {
public:
    // Nothing when the service refuses; a refused registration still uses up its number.
    static std::unique_ptr<Object_Shortcut_Hot_Key>
    initWithShortcut(const Object_Shortcut& shortcut, std::function<void()> handler);
    ~Object_Shortcut_Hot_Key();

    quint32 carbonHotKeyID = 0;
    std::function<void()> handler;
    Object_Shortcut shortcut;
    bool carbonHotKey = false; // registered with the service

private:
    void uninstallExisitingHotKey();
};

// The process-wide registry of hot keys, keyed by the shortcut's description.
class Hot_Key_Registry {
public:
    // The service the registry registers with; none refuses every registration.
    static void setService(std::unique_ptr<Hot_Key_Service> service);
    static Hot_Key_Service* service();

    // The monitor token, or nothing when an equal shortcut is registered or the service refuses.
    static std::optional<QString>
    addGlobalHotkeyMonitorWithShortcut(const Object_Shortcut& shortcut,
                                       std::function<void()> handler);
    static void removeGlobalHotkeyMonitor(const QString& token);

    // Runs the handler of the hot key registered under that number, if any.
    static void dispatch(quint32 number);

    // The number the next registration will use, less one; 0 before the first.
    static quint32 counter();
    static bool handlerInstalled();

    // Forgets every hot key and resets the counter; for a fresh start in tests.
    static void reset();

private:
    friend class Object_Shortcut_Hot_Key;
    struct State;
    static State& state();
};
