#include "support/metamethods.h"
#include "support/wait.h"
#include "tarnis/foundation/modelesswidgetmanager.h"

#include <QLabel>
#include <QPointer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

namespace {

QStringList debugTexts;

void collectDebugText(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtDebugMsg)
        debugTexts.append(text);
}

} // namespace

class TestModelessWidgetManager : public QObject {
    Q_OBJECT

    // An owner that opens its windows as documented.
    struct Owner : QWidget {
        ModelessWidgetManager manager;
        int created = 0;

        QWidget* open(void* key)
        {
            if (QWidget* window = manager.map.value(key)) {
                window->show();
                window->activateWindow();
                return window;
            }
            auto* const window = new QLabel(this, Qt::Window);
            ++created;
            manager.map[key] = window;
            QObject::connect(window, &QObject::destroyed, &manager, &ModelessWidgetManager::onDestroyed);
            window->setAttribute(Qt::WA_DeleteOnClose);
            window->show();
            return window;
        }
    };

    int m_keys[3] = {};
    void* key(int i) { return &m_keys[i]; }

private Q_SLOTS:
    void signalAndSlotAreInOrder()
    {
        QCOMPARE(tarnis::testing::ownMethods(ModelessWidgetManager::staticMetaObject),
            (QStringList { "signal onClosed(void*)", "slot onDestroyed(QObject*)" }));
    }

    void secondRequestShowsTheWindowThatExists()
    {
        Owner owner;
        QWidget* const window = owner.open(key(0));
        window->hide();
        QCOMPARE(owner.open(key(0)), window);
        QVERIFY(window->isVisible());
        QCOMPARE(owner.created, 1);
    }

    void closedWindowIsForgotten()
    {
        Owner owner;
        QSignalSpy closed(&owner.manager, &ModelessWidgetManager::onClosed);
        const QPointer<QWidget> window = owner.open(key(0));
        window->close();
        TRY_VERIFY(window.isNull());
        QVERIFY(owner.manager.map.isEmpty());
        QCOMPARE(closed.size(), 1);
        QCOMPARE(closed.at(0).at(0).value<void*>(), key(0));
        owner.open(key(0));
        QCOMPARE(owner.created, 2);
    }

    void onlyTheClosedWindowIsForgotten()
    {
        Owner owner;
        QWidget* const windows[] = { owner.open(key(0)), owner.open(key(1)), owner.open(key(2)) };
        delete windows[1];
        QCOMPARE(owner.manager.map, (QMap<void*, QWidget*> { { key(0), windows[0] }, { key(2), windows[2] } }));
    }

    void nullIsAKeyLikeAnyOther()
    {
        Owner owner;
        QSignalSpy closed(&owner.manager, &ModelessWidgetManager::onClosed);
        delete owner.open(nullptr);
        QVERIFY(owner.manager.map.isEmpty());
        QCOMPARE(closed.size(), 1);
        QCOMPARE(closed.at(0).at(0).value<void*>(), nullptr);
    }

    void unknownWindowReportsANullKey()
    {
        Owner owner;
        QSignalSpy closed(&owner.manager, &ModelessWidgetManager::onClosed);
        QWidget* const window = owner.open(key(0));
        QWidget stranger;
        owner.manager.onDestroyed(&stranger);
        QCOMPARE(closed.size(), 1);
        QCOMPARE(closed.at(0).at(0).value<void*>(), nullptr);
        QCOMPARE(owner.manager.map, (QMap<void*, QWidget*> { { key(0), window } }));
    }

    void unknownWindowRemovesTheEntryOfTheNullKey()
    {
        Owner owner;
        owner.open(nullptr);
        QWidget* const other = owner.open(key(0));
        QWidget stranger;
        owner.manager.onDestroyed(&stranger);
        QCOMPARE(owner.manager.map, (QMap<void*, QWidget*> { { key(0), other } }));
    }

    void goesBeforeItsWindows()
    {
        QPointer<QWidget> window;
        {
            auto manager = std::make_unique<ModelessWidgetManager>();
            window = new QWidget;
            manager->map[key(0)] = window;
            connect(window.data(), &QObject::destroyed, manager.get(), &ModelessWidgetManager::onDestroyed);
        }
        QVERIFY(window);
        delete window.data();
        // An owner's members are destroyed before its child windows, so there is no notification.
        auto owner = std::make_unique<Owner>();
        window = owner->open(key(0));
        owner.reset();
        QVERIFY(window.isNull());
    }

    void tracesWhatIsDestroyed()
    {
        debugTexts.clear();
        ModelessWidgetManager manager;
        QObject object;
        const QtMessageHandler previous = qInstallMessageHandler(collectDebugText);
        manager.onDestroyed(&object);
        qInstallMessageHandler(previous);
        QCOMPARE(debugTexts.size(), 1);
        const QRegularExpression form(
            QStringLiteral("^modelesswidgetmanager\\.h : \\d+ 0x[0-9a-f]+ \\| Destroyed: 0x0*%1$")
                .arg(reinterpret_cast<quintptr>(&object), 0, 16));
        QVERIFY2(form.match(debugTexts.at(0)).hasMatch(), qPrintable(debugTexts.at(0)));
    }
};

QTEST_MAIN(TestModelessWidgetManager)
#include "tst_modelesswidgetmanager.moc"
