// Boxes that are answered, and boxes whose parent is destroyed while they are open.
#include "support/modalwatchdog.h"

#include "tarnis/foundation/modalbox_p.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using tarnis::testing::acceptFile;
using tarnis::testing::ModalWatchdog;
using tarnis::testing::reject;

namespace {

ModalWatchdog::Answer press(QMessageBox::StandardButton button)
{
    return [button](QWidget& window) { dynamic_cast<QMessageBox&>(window).button(button)->click(); };
}

/// How the parent is destroyed: at once, or as a window that deletes itself on close.
ModalWatchdog::Answer deleteParent(QPointer<QWidget> parent)
{
    return [parent](QWidget&) { delete parent; };
}

ModalWatchdog::Answer closeParent(QPointer<QWidget> parent)
{
    return [parent](QWidget&) { parent->close(); };
}

QWidget* newWindow()
{
    auto* const window = new QWidget;
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->show();
    return window;
}

} // namespace

class TestModalBox : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsTitleTextAndIcon()
    {
        QString seen;
        ModalWatchdog watchdog({ [&](QWidget& window) {
            auto& box = dynamic_cast<QMessageBox&>(window);
            seen = box.windowTitle() + '|' + box.text() + '|' + QString::number(box.icon());
            box.button(QMessageBox::Ok)->click();
        } });
        QCOMPARE(tarnis::showBox(QMessageBox::Warning, nullptr, "title", "text"), QMessageBox::Ok);
        QVERIFY(watchdog.isContent());
        QCOMPARE(seen, QString("title|text|%1").arg(QMessageBox::Warning));
    }

    void givesTheButton()
    {
        ModalWatchdog watchdog(
            { press(QMessageBox::No), [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); } });
        const auto ask = [] {
            return tarnis::showBox(
                QMessageBox::Question, nullptr, "title", "text", QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
        };
        QCOMPARE(ask(), QMessageBox::No);
        QCOMPARE(ask(), QMessageBox::No); // the button of the Escape key
        QVERIFY(watchdog.isContent());
    }

    void asksForAFile()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("a.csv");
        QString seen;
        ModalWatchdog watchdog({ [&](QWidget& window) {
                                    auto& dialog = dynamic_cast<QFileDialog&>(window);
                                    seen = dialog.windowTitle() + '|' + dialog.directory().path() + '|'
                                        + dialog.nameFilters().join('|');
                                    acceptFile(path)(window);
                                },
            reject() });
        QCOMPARE(tarnis::askSaveFileName(nullptr, "Save", folder.path(), "CSV Files (*.csv *.txt)"), path);
        QCOMPARE(seen, "Save|" + folder.path() + "|CSV Files (*.csv *.txt)");
        QCOMPARE(tarnis::askSaveFileName(nullptr, "Save", folder.path(), "CSV Files (*.csv *.txt)"), QString());
        QVERIFY(watchdog.isContent());
    }

    void asksForAText()
    {
        QString seen;
        ModalWatchdog watchdog({ [&](QWidget& window) {
                                    auto& dialog = dynamic_cast<QInputDialog&>(window);
                                    seen = dialog.windowTitle() + '|' + dialog.labelText() + '|' + dialog.textValue();
                                    dialog.setTextValue("new");
                                    dialog.accept();
                                },
            reject() });
        QCOMPARE(tarnis::askText(nullptr, "Edit", "Min Y", "old"), std::optional<QString>("new"));
        QCOMPARE(seen, QString("Edit|Min Y|old"));
        QCOMPARE(tarnis::askText(nullptr, "Edit", "Min Y", "old"), std::optional<QString>());
        QVERIFY(watchdog.isContent());
    }

    void isDestroyedWithItsParent_data()
    {
        QTest::addColumn<bool>("closed");
        QTest::newRow("deleted") << false;
        QTest::newRow("closed") << true;
    }
    void isDestroyedWithItsParent()
    {
        QFETCH(bool, closed);
        const auto end = [closed](QWidget* window) { return closed ? closeParent(window) : deleteParent(window); };

        QPointer<QWidget> window = newWindow();
        {
            ModalWatchdog watchdog({ end(window) });
            QCOMPARE(tarnis::showBox(QMessageBox::Warning, window, "title", "text"), QMessageBox::NoButton);
            QVERIFY(watchdog.isContent() && window.isNull());
        }
        window = newWindow();
        {
            ModalWatchdog watchdog({ end(window) });
            QCOMPARE(tarnis::askSaveFileName(window, "Save", QString(), QString()), QString());
            QVERIFY(watchdog.isContent() && window.isNull());
        }
        window = newWindow();
        {
            ModalWatchdog watchdog({ end(window) });
            QCOMPARE(tarnis::askText(window, "Edit", "Min Y", "1"), std::optional<QString>());
            QVERIFY(watchdog.isContent() && window.isNull());
        }
    }

    void leavesNothingBehind()
    {
        QWidget window;
        window.show();
        ModalWatchdog watchdog({ press(QMessageBox::Ok), reject(), reject() });
        tarnis::showBox(QMessageBox::Warning, &window, "title", "text");
        tarnis::askSaveFileName(&window, "Save", QString(), QString());
        tarnis::askText(&window, "Edit", "Min Y", "1");
        QVERIFY(watchdog.isContent());
        QVERIFY(window.findChildren<QDialog*>().isEmpty());
    }
};

QTEST_MAIN(TestModalBox)
#include "tst_modalbox.moc"
