#include "hotkeys/Hot_Key_Registry.h"

struct Hot_Key_Registry::State {
    std::unique_ptr<Hot_Key_Service> service;
    std::map<QString, std::unique_ptr<Object_Shortcut_Hot_Key>> hotKeys;
    bool handlerInstalled = false;
    quint32 counter = 0;
};

Hot_Key_Registry::State& Hot_Key_Registry::state()
{
    static State registry;
    return registry;
}

void Hot_Key_Registry::setService(std::unique_ptr<Hot_Key_Service> service)
{
    state().service = std::move(service);
}

Hot_Key_Service* Hot_Key_Registry::service()
{
    return state().service.get();
}

quint32 Hot_Key_Registry::counter()
{
    return state().counter;
}

bool Hot_Key_Registry::handlerInstalled()
{
    return state().handlerInstalled;
}

void Hot_Key_Registry::reset()
{
    state().hotKeys.clear();
    if (state().handlerInstalled && service())
        service()->removeHandler();
    state().handlerInstalled = false;
    state().counter = 0;
}

std::unique_ptr<Object_Shortcut_Hot_Key>
Object_Shortcut_Hot_Key::initWithShortcut(const Object_Shortcut& shortcut,
                                          std::function<void()> handler)
{
    auto hotKey = std::unique_ptr<Object_Shortcut_Hot_Key>(new Object_Shortcut_Hot_Key);
    hotKey->shortcut = shortcut;
    hotKey->handler = std::move(handler);
    Hot_Key_Registry::State& registry = Hot_Key_Registry::state();
    Hot_Key_Service* service = registry.service.get();
    if (!service)
        return nullptr;
    if (!registry.handlerInstalled) {
        registry.handlerInstalled = service->installHandler();
        if (!registry.handlerInstalled)
            return nullptr;
    }
    const quint32 number = ++registry.counter;
    if (!service->registerHotKey(shortcut, number))
        return nullptr;
    hotKey->carbonHotKeyID = number;
    hotKey->carbonHotKey = true;
    return hotKey;
}

Object_Shortcut_Hot_Key::~Object_Shortcut_Hot_Key()
{
    uninstallExisitingHotKey();
}

void Object_Shortcut_Hot_Key::uninstallExisitingHotKey()
{
    if (!carbonHotKey)
        return;
    if (Hot_Key_Service* service = Hot_Key_Registry::service())
        service->unregisterHotKey(carbonHotKeyID);
    carbonHotKey = false;
}

std::optional<QString>
Hot_Key_Registry::addGlobalHotkeyMonitorWithShortcut(const Object_Shortcut& shortcut,
                                                     std::function<void()> handler)
{
    const QString token = shortcut.description();
    if (state().hotKeys.contains(token))
        return std::nullopt;
    std::unique_ptr<Object_Shortcut_Hot_Key> hotKey =
        Object_Shortcut_Hot_Key::initWithShortcut(shortcut, std::move(handler));
    if (!hotKey)
        return std::nullopt;
    state().hotKeys.emplace(token, std::move(hotKey));
    return token;
}

void Hot_Key_Registry::removeGlobalHotkeyMonitor(const QString& token)
{
    if (token.isEmpty())
        return;
    state().hotKeys.erase(token);
    if (state().hotKeys.empty() && state().handlerInstalled) {
        if (service())
            service()->removeHandler();
        state().handlerInstalled = false;
    }
}

void Hot_Key_Registry::dispatch(quint32 number)
{
    for (const auto& [token, hotKey] : state().hotKeys) {
        if (hotKey->carbonHotKeyID == number) {
            if (hotKey->handler)
                hotKey->handler();
            return;
        }
    }
}
