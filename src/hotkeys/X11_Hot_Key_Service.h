#pragma once

#include "hotkeys/Hot_Key_Registry.h"

#include <QAbstractNativeEventFilter>
#include <QMap>

#include <memory>

class QObject;
struct xcb_connection_t;

// Hot keys on X11: passive key grabs on the root window, read back through a native event
// filter. The grab takes the key wherever the focus is, also from our own windows; while one
// of our text fields has the focus the key is handed on to it instead, so the caret moves.
class X11_Hot_Key_Service : public Hot_Key_Service, public QAbstractNativeEventFilter {
public:
    // Nothing where there is no X11 (Wayland, offscreen): hot keys are then refused.
    static std::unique_ptr<X11_Hot_Key_Service> create();
    ~X11_Hot_Key_Service() override;

    bool installHandler() override;
    void removeHandler() override;
    bool registerHotKey(const Object_Shortcut& shortcut, quint32 number) override;
    void unregisterHotKey(quint32 number) override;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    struct Grab {
        quint8 keycode = 0;
        quint16 modifiers = 0;
        int qtKey = 0;
    };

    X11_Hot_Key_Service(xcb_connection_t* connection, quint32 root);
    quint8 keycodeFor(quint32 keysym) const;
    bool grab(const Grab& grab, bool on);
    static QObject* focusedTextField();

    xcb_connection_t* connection;
    quint32 root;
    QMap<quint32, Grab> grabs;
};
