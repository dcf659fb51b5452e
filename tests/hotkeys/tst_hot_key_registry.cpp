#include "hotkeys/Hot_Key_Registry.h"

#include <QTest>

namespace {

// Stands in for the system's hot-key service and records what the registry asks of it.
class Recording_Service : public Hot_Key_Service {
public:
    bool installHandler() override { return ++installs, true; }
    void removeHandler() override { ++removals; }
    bool registerHotKey(const Object_Shortcut&, quint32 number) override
    {
        if (refuseNext) {
            refuseNext = false;
            return false;
        }
        registered << number;
        return true;
    }
    void unregisterHotKey(quint32 number) override { registered.removeOne(number); }

    bool refuseNext = false;
    int installs = 0;
    int removals = 0;
    QList<quint32> registered;
};

} // namespace

class Test_Hot_Key_Registry : public QObject {
    Q_OBJECT
private slots:
    void init();
    void shortcuts_data();
    void shortcuts();
    void numbersStartAtOneAndAdvanceOnRefusalToo();
    void equalShortcutIsRefusedAndTheFirstStays();
    void removedHotKeyIsNoLongerDispatched();
    void withoutAServiceEveryRegistrationIsRefused();

private:
    Recording_Service* service = nullptr;
};

void Test_Hot_Key_Registry::init()
{
    Hot_Key_Registry::reset();
    auto recording = std::make_unique<Recording_Service>();
    service = recording.get();
    Hot_Key_Registry::setService(std::move(recording));
}

void Test_Hot_Key_Registry::shortcuts_data()
{
    QTest::addColumn<quint64>("keyCode");
    QTest::addColumn<quint64>("flags");
    QTest::addColumn<quint64>("kept");
    QTest::addColumn<quint32>("carbonFlags");
    QTest::addColumn<QString>("description");
    QTest::newRow("left arrow") << quint64(123) << quint64(0) << quint64(0) << quint32(0)
                                << QString(QChar(0x2190));
    QTest::newRow("right arrow") << quint64(124) << quint64(0) << quint64(0) << quint32(0)
                                 << QString(QChar(0x2192));
    QTest::newRow("Caps Lock and Fn are dropped")
        << quint64(124) << quint64(0x10000 | 0x800000 | 0x20000) << quint64(0x20000)
        << quint32(0x200) << QString(QChar(0x21E7)) + QChar(0x2192);
    QTest::newRow("all four, in symbol order")
        << quint64(123) << quint64(0x1e0000) << quint64(0x1e0000) << quint32(0x1b00)
        << QString(QChar(0x2303)) + QChar(0x2325) + QChar(0x21E7) + QChar(0x2318) + QChar(0x2190);
}

void Test_Hot_Key_Registry::shortcuts()
{
    QFETCH(quint64, keyCode);
    QFETCH(quint64, flags);
    QFETCH(quint64, kept);
    QFETCH(quint32, carbonFlags);
    QFETCH(QString, description);
    const Object_Shortcut shortcut = Object_Shortcut::shortcutWithKeyCode(keyCode, flags);
    QCOMPARE(shortcut.modifierFlags, kept);
    QCOMPARE(shortcut.carbonFlags(), carbonFlags);
    QCOMPARE(shortcut.description(), description);
    QCOMPARE(shortcut.carbonKeyCode(), keyCode);
    QCOMPARE(Object_Shortcut{}.carbonKeyCode(), quint64(0));
}

void Test_Hot_Key_Registry::numbersStartAtOneAndAdvanceOnRefusalToo()
{
    QCOMPARE(Hot_Key_Registry::counter(), quint32(0));
    QVERIFY(Hot_Key_Registry::addGlobalHotkeyMonitorWithShortcut(
        Object_Shortcut::shortcutWithKeyCode(123, 0), [] {}));
    QCOMPARE(service->registered, QList<quint32>{1});
    service->refuseNext = true;
    QVERIFY(!Hot_Key_Registry::addGlobalHotkeyMonitorWithShortcut(
        Object_Shortcut::shortcutWithKeyCode(124, 0), [] {}));
    QCOMPARE(Hot_Key_Registry::counter(), quint32(2));
    QVERIFY(Hot_Key_Registry::addGlobalHotkeyMonitorWithShortcut(
        Object_Shortcut::shortcutWithKeyCode(124, 0), [] {}));
    QCOMPARE(service->registered, (QList<quint32>{1, 3}));
    QCOMPARE(service->installs, 1);
}

void Test_Hot_Key_Registry::equalShortcutIsRefusedAndTheFirstStays()
{
    int first = 0;
    int second = 0;
    const auto token = Hot_Key_Registry::addGlobalHotkeyMonitorWithShortcut(
        Object_Shortcut::shortcutWithKeyCode(123, 0), [&first] { ++first; });
    QCOMPARE(token, std::optional<QString>(QString(QChar(0x2190))));
    // Flags outside the four kept ones make no different shortcut.
    QVERIFY(!Hot_Key_Registry::addGlobalHotkeyMonitorWithShortcut(
        Object_Shortcut::shortcutWithKeyCode(123, 0x10000), [&second] { ++second; }));
    Hot_Key_Registry::dispatch(1);
    QCOMPARE(first, 1);
    QCOMPARE(second, 0);
    QCOMPARE(Hot_Key_Registry::counter(), quint32(1));
}

void Test_Hot_Key_Registry::removedHotKeyIsNoLongerDispatched()
{
    int left = 0;
    int right = 0;
    const auto leftToken = Hot_Key_Registry::addGlobalHotkeyMonitorWithShortcut(
        Object_Shortcut::shortcutWithKeyCode(123, 0), [&left] { ++left; });
    const auto rightToken = Hot_Key_Registry::addGlobalHotkeyMonitorWithShortcut(
        Object_Shortcut::shortcutWithKeyCode(124, 0), [&right] { ++right; });
    Hot_Key_Registry::removeGlobalHotkeyMonitor(*leftToken);
    QCOMPARE(service->registered, QList<quint32>{2});
    Hot_Key_Registry::dispatch(1);
    Hot_Key_Registry::dispatch(2);
    QCOMPARE(left, 0);
    QCOMPARE(right, 1);
    QCOMPARE(service->removals, 0);
    Hot_Key_Registry::removeGlobalHotkeyMonitor(*rightToken);
    QCOMPARE(service->removals, 1); // the last one gone: the common handler goes too
    QVERIFY(!Hot_Key_Registry::handlerInstalled());
    Hot_Key_Registry::removeGlobalHotkeyMonitor(QString()); // an empty token is ignored
}

void Test_Hot_Key_Registry::withoutAServiceEveryRegistrationIsRefused()
{
    Hot_Key_Registry::reset();
    Hot_Key_Registry::setService(nullptr);
    QVERIFY(!Hot_Key_Registry::addGlobalHotkeyMonitorWithShortcut(
        Object_Shortcut::shortcutWithKeyCode(123, 0), [] {}));
}

QTEST_APPLESS_MAIN(Test_Hot_Key_Registry)
#include "tst_hot_key_registry.moc"
