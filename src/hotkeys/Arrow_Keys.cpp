#include "app/AppDelegate.h"

#include "hotkeys/Hot_Key_Registry.h"
#include "hotkeys/X11_Hot_Key_Service.h"

// Left and Right step the playhead even when another application is in front. Each press
// restarts a 0.2 s delay, so a burst of presses steps once.
void AppDelegate::Register_Arrow_Hot_Keys()
{
    if (!Hot_Key_Registry::service())
        Hot_Key_Registry::setService(X11_Hot_Key_Service::create());
    constantShortcutManager = Hot_Key_Registry::addGlobalHotkeyMonitorWithShortcut(
        Object_Shortcut::shortcutWithKeyCode(Object_Shortcut::Left_Arrow, 0), [this] {
            if (!commandGate.isBusy())
                timerKeyLeft.start();
        });
    constantInsertTextPopupMenu = Hot_Key_Registry::addGlobalHotkeyMonitorWithShortcut(
        Object_Shortcut::shortcutWithKeyCode(Object_Shortcut::Right_Arrow, 0), [this] {
            if (!commandGate.isBusy())
                timerKeyRight.start();
        });
    if (!constantShortcutManager || !constantInsertTextPopupMenu)
        qInfo("System-wide arrow keys are not available here; Left and Right work in the window.");
}

void AppDelegate::Unregister_Arrow_Hot_Keys()
{
    Hot_Key_Registry::removeGlobalHotkeyMonitor(constantShortcutManager.value_or(QString()));
    Hot_Key_Registry::removeGlobalHotkeyMonitor(constantInsertTextPopupMenu.value_or(QString()));
    constantShortcutManager.reset();
    constantInsertTextPopupMenu.reset();
}
