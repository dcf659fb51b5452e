#include "hotkeys/Object_Shortcut.h"

Object_Shortcut Object_Shortcut::shortcutWithKeyCode(quint64 keyCode, quint64 modifierFlags)
{
    return {keyCode, modifierFlags & Modifier_Mask};
}

quint32 Object_Shortcut::carbonFlags() const
{
    quint32 flags = 0;
    if (modifierFlags & Command)
        flags |= 0x100;
    if (modifierFlags & Shift)
        flags |= 0x200;
    if (modifierFlags & Option)
        flags |= 0x800;
    if (modifierFlags & Control)
        flags |= 0x1000;
    return flags;
}

QString Object_Shortcut::description() const
{
    QString text;
    if (modifierFlags & Control)
        text += QChar(0x2303);
    if (modifierFlags & Option)
        text += QChar(0x2325);
    if (modifierFlags & Shift)
        text += QChar(0x21E7);
    if (modifierFlags & Command)
        text += QChar(0x2318);
    switch (keyCode) {
    case Left_Arrow:
        return text + QChar(0x2190);
    case Right_Arrow:
        return text + QChar(0x2192);
    case No_Key:
        return text;
    default:
        return text + QStringLiteral("#%1").arg(keyCode);
    }
}
