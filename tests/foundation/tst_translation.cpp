// The library's texts in another language, changed while windows are open.
#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/foundation/translation.h>

#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QTest>
#include <QTranslator>

class TestTranslation : public QObject {
    Q_OBJECT
private:
    static QString zoomIn() { return QCoreApplication::translate("XYGraphWidget", "Zoom In"); }

private Q_SLOTS:
    void cleanup() { tarnis::setLanguage(QLocale(QLocale::English)); }

    void germanAndBack()
    {
        QCOMPARE(zoomIn(), "Zoom In");
        QVERIFY(tarnis::setLanguage(QLocale(QLocale::German, QLocale::Austria)));
        QCOMPARE(zoomIn(), "Vergrößern");
        QVERIFY(tarnis::setLanguage(QLocale(QLocale::English)));
        QCOMPARE(zoomIn(), "Zoom In");
        QVERIFY(tarnis::setLanguage(QLocale::c()));
        QCOMPARE(zoomIn(), "Zoom In");
    }

    void languageWithoutCatalogue()
    {
        QVERIFY(tarnis::setLanguage(QLocale(QLocale::German)));
        QVERIFY(!tarnis::setLanguage(QLocale(QLocale::Japanese)));
        QCOMPARE(zoomIn(), "Zoom In");
    }

    void openWindowsFollow()
    {
        Graph1DDialog window(nullptr, "Title", "X", 0, 10, 1, 0, "Ch", {}, "hist", 0, 1, nullptr);
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        window.show();
        auto* const button = window.findChild<QPushButton*>("updatePushButton");
        QCOMPARE(button->text(), "Update");
        tarnis::setLanguage(QLocale(QLocale::German));
        QTRY_COMPARE(button->text(), "Aktualisieren");
        // The entries of this box are also what the window reads: they stay.
        QCOMPARE(window.findChild<QComboBox*>("typeComboBox")->itemText(0), "Each");
        tarnis::setLanguage(QLocale(QLocale::English));
        QTRY_COMPARE(button->text(), "Update");
    }

    void loadsOnce()
    {
        for (int i = 0; i < 100; ++i)
            tarnis::setLanguage(QLocale(QLocale::German));
        QCOMPARE(QCoreApplication::instance()->findChildren<QTranslator*>().size(), 1);
    }
};

QTEST_MAIN(TestTranslation)
#include "tst_translation.moc"
