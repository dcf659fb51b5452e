#include "hotkeys/X11_Hot_Key_Service.h"

#include <QGuiApplication>
#include <QInputMethodQueryEvent>
#include <QKeyEvent>

#include <xcb/xcb.h>

#include <cstdlib>

namespace {

constexpr quint32 Keysym_Left = 0xff51;
constexpr quint32 Keysym_Right = 0xff53;

// Grabs also hold with Caps Lock or Num Lock on, which a person does not think of as modifiers.
constexpr quint16 Lock_Variants[] = {0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2,
                                     XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};

quint16 x11Modifiers(quint32 carbonFlags)
{
    quint16 modifiers = 0;
    if (carbonFlags & 0x100)
        modifiers |= XCB_MOD_MASK_4;
    if (carbonFlags & 0x200)
        modifiers |= XCB_MOD_MASK_SHIFT;
    if (carbonFlags & 0x800)
        modifiers |= XCB_MOD_MASK_1;
    if (carbonFlags & 0x1000)
        modifiers |= XCB_MOD_MASK_CONTROL;
    return modifiers;
}

} // namespace

std::unique_ptr<X11_Hot_Key_Service> X11_Hot_Key_Service::create()
{
    auto* x11 = qApp ? qApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (!x11 || !x11->connection())
        return nullptr;
    xcb_connection_t* connection = x11->connection();
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    if (!screen)
        return nullptr;
    return std::unique_ptr<X11_Hot_Key_Service>(new X11_Hot_Key_Service(connection, screen->root));
}

X11_Hot_Key_Service::X11_Hot_Key_Service(xcb_connection_t* x11, quint32 rootWindow)
    : connection(x11)
    , root(rootWindow)
{}

X11_Hot_Key_Service::~X11_Hot_Key_Service()
{
    removeHandler();
}

bool X11_Hot_Key_Service::installHandler()
{
    qApp->installNativeEventFilter(this);
    return true;
}

void X11_Hot_Key_Service::removeHandler()
{
    if (qApp)
        qApp->removeNativeEventFilter(this);
}

quint8 X11_Hot_Key_Service::keycodeFor(quint32 keysym) const
{
    const xcb_setup_t* setup = xcb_get_setup(connection);
    const int count = setup->max_keycode - setup->min_keycode + 1;
    xcb_get_keyboard_mapping_reply_t* mapping = xcb_get_keyboard_mapping_reply(
        connection,
        xcb_get_keyboard_mapping(connection, setup->min_keycode, static_cast<quint8>(count)),
        nullptr);
    if (!mapping)
        return 0;
    const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(mapping);
    const int perKeycode = mapping->keysyms_per_keycode;
    quint8 found = 0;
    for (int i = 0; i < count * perKeycode && !found; ++i)
        if (keysyms[i] == keysym)
            found = static_cast<quint8>(setup->min_keycode + i / perKeycode);
    std::free(mapping);
    return found;
}

bool X11_Hot_Key_Service::grab(const Grab& grab, bool on)
{
    bool refused = false;
    for (const quint16 variant : Lock_Variants) {
        const quint16 modifiers = grab.modifiers | variant;
        const xcb_void_cookie_t cookie =
            on ? xcb_grab_key_checked(connection, 1, root, modifiers, grab.keycode,
                                      XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)
               : xcb_ungrab_key_checked(connection, grab.keycode, root, modifiers);
        if (xcb_generic_error_t* error = xcb_request_check(connection, cookie)) {
            refused = refused || variant == 0;
            std::free(error);
        }
    }
    return !refused;
}

bool X11_Hot_Key_Service::registerHotKey(const Object_Shortcut& shortcut, quint32 number)
{
    quint32 keysym = 0;
    if (shortcut.keyCode == Object_Shortcut::Left_Arrow)
        keysym = Keysym_Left;
    else if (shortcut.keyCode == Object_Shortcut::Right_Arrow)
        keysym = Keysym_Right;
    const Grab wanted{keycodeFor(keysym), x11Modifiers(shortcut.carbonFlags()),
                      keysym == Keysym_Left ? Qt::Key_Left : Qt::Key_Right};
    if (keysym == 0 || wanted.keycode == 0)
        return false;
    if (!grab(wanted, true)) {
        grab(wanted, false); // another application holds this key
        return false;
    }
    grabs.insert(number, wanted);
    return true;
}

void X11_Hot_Key_Service::unregisterHotKey(quint32 number)
{
    if (grabs.contains(number))
        grab(grabs.take(number), false);
}

bool X11_Hot_Key_Service::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const quint8 type = event->response_type & ~0x80;
    if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE)
        return false;
    // Press and release events share one layout.
    const auto* key = static_cast<const xcb_key_press_event_t*>(message);
    if (key->event != root)
        return false;
    const quint16 modifiers = key->state & ~(XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2) & 0xff;
    for (auto it = grabs.cbegin(); it != grabs.cend(); ++it) {
        if (it->keycode != key->detail || it->modifiers != modifiers)
            continue;
        if (QObject* field = focusedTextField()) {
            QKeyEvent forwarded(type == XCB_KEY_PRESS ? QEvent::KeyPress : QEvent::KeyRelease,
                                it->qtKey, Qt::NoModifier);
            QCoreApplication::sendEvent(field, &forwarded);
        } else if (type == XCB_KEY_PRESS) {
            Hot_Key_Registry::dispatch(it.key());
        }
        return true;
    }
    return false;
}

// The focused object of our own active window when it edits text, else nothing.
QObject* X11_Hot_Key_Service::focusedTextField()
{
    QObject* focus = QGuiApplication::focusObject();
    if (!focus)
        return nullptr;
    QInputMethodQueryEvent query(Qt::ImEnabled);
    QCoreApplication::sendEvent(focus, &query);
    return query.value(Qt::ImEnabled).toBool() ? focus : nullptr;
}
