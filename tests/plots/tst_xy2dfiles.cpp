// Output of the 2D plot: the read-out under the mouse, the menu of the colour bar, images, CSV, pages.
#include "plots/smallmap.h"
#include "support/map2dprobe.h"
#include "support/modalwatchdog.h"
#include "support/oversizedpictures.h"
#include "support/plotmouse.h"
#include "support/wait.h"

#include <tarnis/foundation/helpers.h>

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QImageReader>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolTip>

using namespace tarnis::testing;

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

/// The colour in the centre of an entry's icon.
QColor colourOf(const QAction& action)
{
    return action.icon().pixmap(15, 15).toImage().pixelColor(7, 7);
}

} // namespace

class TestXY2DFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVERIFY(folder.isValid());
        setSaveFilePath(folder.path() + '/');
    }

    void cleanup() { resetColours(); }

    void readOutFollowsTheMouse()
    {
        Plot plot;
        plot.useRoundPixels();
        PlotMouse mouse(plot);
        mouse.move(QPoint(101, 85));
        QCOMPARE(QToolTip::text(), QString("x:10 y:-5 i:1"));
        QVERIFY(QToolTip::isVisible());
        mouse.move(QPoint(125, 85));
        QCOMPARE(QToolTip::text(), QString("x:12 y:-5 i:2"));
        plot.setDecimalX(2);
        plot.setDecimalY(1);
        mouse.move(QPoint(155, 55));
        QCOMPARE(QToolTip::text(), QString("x:15 y:2.5 i:1.23457e+06"));
        plot.setDecimalX(0);
        mouse.move(QPoint(154, 55));
        QCOMPARE(QToolTip::text(), QString("x:14 y:2.5 i:1.23457e+06"));
    }

    void readOutIsHidden_data()
    {
        QTest::addColumn<QPoint>("point");
        QTest::newRow("over 0") << QPoint(110, 55);
        QTest::newRow("over a negative bin") << QPoint(130, 55);
        QTest::newRow("on the left edge of the graph") << QPoint(100, 85);
        QTest::newRow("on the right edge") << QPoint(159, 85);
        QTest::newRow("on the upper edge") << QPoint(150, 50);
        QTest::newRow("on the lower edge") << QPoint(150, 89);
        QTest::newRow("outside") << QPoint(20, 20);
    }
    void readOutIsHidden()
    {
        QFETCH(QPoint, point);
        Plot plot;
        plot.useRoundPixels();
        PlotMouse mouse(plot);
        mouse.move(QPoint(125, 85));
        QVERIFY(!QToolTip::text().isEmpty());
        mouse.move(point);
        TRY_VERIFY(!QToolTip::isVisible() || QToolTip::text().isEmpty());
    }

    void readOutOfAMapWithoutRows()
    {
        Plot plot;
        plot.clearData();
        plot.useRoundPixels();
        PlotMouse(plot).move(QPoint(125, 85));
        QVERIFY(!QToolTip::isVisible() || QToolTip::text().isEmpty());
    }

    void menuHasItsEntries()
    {
        Plot plot;
        const QMenu* menu = plot.openMenu();
        QVERIFY(menu);
        QCOMPARE(menu->parentWidget(), &plot);
        QStringList texts;
        for (const QAction* action : menu->actions())
            texts << action->text() + (action->icon().isNull() ? "" : " *");
        QCOMPARE(texts,
            (QStringList { "Pattern - Rainbow1", "Pattern - Rainbow2", "Pattern - Grayscale", "Pattern - BlueRedGreen",
                "Pattern - RedWhiteBlue", "Pattern - CyanMagenta", "Pattern - YellowHot", "Pattern - Blue",
                " Edit - Max Color *", " Edit - Half Max Color *", " Edit - Half Color *", " Edit - Half Min Color *",
                " Edit - Min Color *", "Edit - Reverse", " Edit - Back Ground Color *" }));
        QVERIFY(menu->isVisible());
    }

    void menuShowsTheColours()
    {
        Plot plot;
        plot.updateColor("#010000", "#020000", "#030000", "#040000", "#050000", "#060000");
        const QList<QAction*> entries = plot.openMenu()->actions();
        QList<QColor> colors;
        for (const int entry : { 8, 9, 10, 11, 12, 14 })
            colors << colourOf(*entries.at(entry));
        QCOMPARE(colors, (QList<QColor> { "#010000", "#020000", "#030000", "#040000", "#050000", "#060000" }));
        QCOMPARE(entries.at(8)->icon().availableSizes(), QList<QSize> { QSize(15, 15) });
    }

    void menuEntriesWork()
    {
        const QStringList middle { "#00ff00", "#00ff00", "#808080", "#ff0000", "#ffffff", "#8080ff", "#ff0000",
            "#0000ff" };
        Plot plot;
        QSignalSpy changed(&plot, &XY2DGraphWidget::onColorBarChanged);
        for (int entry = 0; entry < middle.size(); ++entry) {
            plot.openMenu()->actions().at(entry)->trigger(); // at once
            QCOMPARE(XY2DGraphWidget::colHalf, QColor(middle.at(entry)));
            QCOMPARE(changed.size(), entry + 1);
        }
        plot.onPatternRainbow1();
        plot.openMenu()->actions().at(13)->trigger();
        QCOMPARE(XY2DGraphWidget::colMax, QColor("#000000"));
    }

    void menuColoursOpenTheirDialogAfterTheMenu()
    {
        const QList<QPair<int, QColor*>> entries { { 8, &XY2DGraphWidget::colMax }, { 9, &XY2DGraphWidget::colHalfMax },
            { 10, &XY2DGraphWidget::colHalf }, { 11, &XY2DGraphWidget::colHalfMin }, { 12, &XY2DGraphWidget::colMin },
            { 14, &XYGraphWidget::m_backGroundColor } };
        for (const auto& [entry, colour] : entries) {
            Plot plot;
            QSignalSpy changed(&plot, &XY2DGraphWidget::onColorBarChanged);
            QMenu* menu = plot.openMenu();
            menu->actions().at(entry)->trigger();
            QVERIFY(QApplication::activeModalWidget() == nullptr); // queued
            menu->close();
            ModalWatchdog watchdog({ [](QWidget& window) {
                auto* dialog = qobject_cast<QColorDialog*>(&window);
                QVERIFY(dialog);
                dialog->setCurrentColor(QColor("#abcdef"));
                dialog->accept();
            } });
            TRY_COMPARE(changed.size(), 1);
            QVERIFY(watchdog.isContent());
            QCOMPARE(*colour, QColor("#abcdef"));
        }
    }

    void menuIsReplaced()
    {
        Plot plot;
        const QPointer<QMenu> first = plot.openMenu();
        plot.openSecondMenu();
        QVERIFY(plot.m_colorBarMenu && plot.m_colorBarMenu != first);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(first.isNull());
        QVERIFY(plot.m_colorBarMenu);
        const QPointer<QMenu> second = plot.m_colorBarMenu;
        second->close();
        QVERIFY(plot.m_colorBarMenu == nullptr);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(second.isNull());
        plot.onColorBarMenuHide(); // without a menu
    }

    void lateHideOfAReplacedMenu()
    {
        Plot plot;
        const QPointer<QMenu> first = plot.openMenu();
        const QPointer<QMenu> second = plot.openSecondMenu();
        Q_EMIT first->aboutToHide();
        QCOMPARE(plot.m_colorBarMenu, second.data());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(second);
    }

    void rightPressOnTheBarReachesNothingElse()
    {
        Plot plot;
        plot.m_actZoomIn->trigger();
        plot.openMenu();
        QCOMPARE(plot.m_minX, 10.0);
        QCOMPARE(plot.findChildren<QMenu*>().size(), 1); // no context menu
        QVERIFY(!plot.m_selecting);
    }

    void leftPressOnTheBarOpensNothing()
    {
        Plot plot;
        PlotMouse(plot).press(plot.m_colorBar->geometry().center());
        QVERIFY(plot.m_colorBarMenu == nullptr);
        PlotMouse(plot).press(plot.m_colorBar->geometry().topLeft() - QPoint(1, 0), Qt::RightButton);
        QVERIFY(plot.m_colorBarMenu == nullptr);
    }

    void pictureHasTheBar()
    {
        for (const bool buffered : { false, true }) {
            Plot plot;
            plot.m_doubleBuffered = buffered; // makes no difference
            const std::unique_ptr<QPixmap> picture(plot.toPixmap());
            QCOMPARE(picture->size(), plot.size());
            const QRect bar(
                QPoint(plot.width() - plot.m_colorBar->width(), plot.m_colorBar->y()), plot.m_colorBar->size());
            QCOMPARE(picture->copy(bar).toImage(), plot.m_colorBar->getPixmap().toImage());
            QVERIFY(plot.m_pixmap.isNull());
        }
    }

    void pictureOfNothingIsNull()
    {
        Plot plot;
        plot.resize(0, 0);
        const std::unique_ptr<QPixmap> picture(plot.toPixmap());
        QVERIFY(picture && picture->isNull());
    }

    void pictureBeyondTheMemory()
    {
        Plot plot;
        plot.resize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        delete plot.toPixmap(); // the result does not matter
    }

    void saveAsksAndWrites()
    {
        Plot plot;
        const std::unique_ptr<QPixmap> expected(plot.toPixmap());
        const QString path = folder.filePath("map.png");
        ModalWatchdog watchdog({ [&](QWidget& window) {
            auto* dialog = qobject_cast<QFileDialog*>(&window);
            QVERIFY(dialog);
            QCOMPARE(dialog->windowTitle(), QString("Save"));
            QCOMPARE(dialog->nameFilters(), QStringList { "Images (*.png *.jpg)" });
            acceptFile(path)(window);
        } });
        plot.onSave();
        QVERIFY(watchdog.isContent());
        QCOMPARE(QImageReader(path).read().convertToFormat(QImage::Format_RGB32),
            expected->toImage().convertToFormat(QImage::Format_RGB32));
    }

    void reportsAFailedSave()
    {
        Plot plot;
        const QString path = folder.filePath("map.nosuchformat");
        const QString before = getSaveDir();
        ModalWatchdog watchdog({ acceptFile(path), [&](QWidget& window) {
                                    auto* box = qobject_cast<QMessageBox*>(&window);
                                    QVERIFY(box);
                                    QCOMPARE(box->windowTitle(), QString("Save Image"));
                                    QCOMPARE(box->text(), QString("Save %1 failed.").arg(path));
                                    box->button(QMessageBox::Ok)->click();
                                } });
        plot.onSave();
        QVERIFY(watchdog.isContent());
        QCOMPARE(getSaveDir(), before);
    }

    void csvIsWritten()
    {
        Plot plot;
        plot.setData(3, { 0.1, -2.0 }, 0.1, false); // row 2 stays empty
        plot.setMinMaxX(10.0, 11.0); // all bins are written, independent of the zoom
        const QString path = folder.filePath("map.csv");
        ModalWatchdog watchdog({ acceptFile(path) });
        QVERIFY(PlotMouse(plot).pick("Save CSV..."));
        QVERIFY(watchdog.isContent());
        QCOMPARE(contentOf(path), QByteArray("1,2,3\n0,-4,1.23457e+06\n\n0.1,-2\n"));
        QCOMPARE(QFileInfo(getSaveDir()).canonicalFilePath(), QFileInfo(path).canonicalPath());
    }

    void csvOfNothingIsAnEmptyFile()
    {
        Plot plot;
        plot.clearData();
        const QString path = folder.filePath("nothing.txt");
        ModalWatchdog watchdog({ acceptFile(path) });
        plot.onSaveCsv();
        QCOMPARE(contentOf(path), QByteArray());
        QVERIFY(QFileInfo::exists(path));
    }

    void csvAsksInTheSaveDirectory()
    {
        Plot plot;
        ModalWatchdog watchdog({ [&](QWidget& window) {
            auto* dialog = qobject_cast<QFileDialog*>(&window);
            QVERIFY(dialog);
            QCOMPARE(dialog->windowTitle(), QString("Save CSV"));
            QCOMPARE(dialog->nameFilters(), QStringList { "CSV Files (*.csv *.txt)" });
            QCOMPARE(QFileInfo(dialog->directory().path()).canonicalFilePath(),
                QFileInfo(folder.path()).canonicalFilePath());
            QCOMPARE(dialog->parentWidget(), &plot);
            dialog->reject();
        } });
        plot.onSaveCsv();
        QVERIFY(watchdog.isContent());
    }

    void csvThatCannotBeOpenedIsSilent()
    {
        Plot plot;
        const QString before = getSaveDir();
        ModalWatchdog watchdog({ acceptFile("/proc/map.csv") });
        plot.onSaveCsv();
        QVERIFY(watchdog.isContent()); // no box
        QCOMPARE(getSaveDir(), before);
    }

    void csvMayLoseItsPlot()
    {
        const QPointer<Plot> plot = new Plot;
        ModalWatchdog watchdog({ [&](QWidget&) { delete plot; } });
        plot->onSaveCsv();
        QVERIFY(plot.isNull() && watchdog.isContent());
    }

private:
    QTemporaryDir folder;
};

QTEST_MAIN(TestXY2DFiles)
#include "tst_xy2dfiles.moc"
