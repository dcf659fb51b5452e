#pragma once

#include <QString>
#include <QtGlobal>

// A key with its modifiers. The modifier flags keep only Shift, Control, Option and Command.
struct Object_Shortcut {
    static constexpr quint64 No_Key = 0x7fffffffffffffffULL;
    static constexpr quint64 Modifier_Mask = 0x1e0000;
    static constexpr quint64 Shift = 0x20000;
    static constexpr quint64 Control = 0x40000;
    static constexpr quint64 Option = 0x80000;
    static constexpr quint64 Command = 0x100000;
    static constexpr quint64 Left_Arrow = 123;
    static constexpr quint64 Right_Arrow = 124;

    quint64 keyCode = No_Key;
    quint64 modifierFlags = 0;

    static Object_Shortcut shortcutWithKeyCode(quint64 keyCode, quint64 modifierFlags);

    quint64 carbonKeyCode() const { return keyCode == No_Key ? 0 : keyCode; }
    // The hot-key service's mask: Command 0x100, Shift 0x200, Option 0x800, Control 0x1000.
    quint32 carbonFlags() const;
    // The modifier symbols (Control, Option, Shift, Command) followed by the key's name.
    QString description() const;
};
