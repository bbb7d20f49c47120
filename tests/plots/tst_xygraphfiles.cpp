// Saving the plot as an image and printing it, with the dialogs answered as a user does.
#include "support/cases.h"
#include "support/frameprobe.h"
#include "support/modalwatchdog.h"
#include "support/plotmouse.h"
#include "support/recordingprinter.h"

#include <tarnis/foundation/helpers.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QImageReader>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPushButton>
#include <QTemporaryDir>

using namespace tarnis::testing;

namespace {

class Plot : public tarnis::testing::FrameProbe<XYGraphWidget> {
public:
    Plot()
    {
        init(QStringLiteral("x"), QStringLiteral("y"), 1000.0, 100.0, true, true);
        resize(400, 300);
    }
    QPixmap* toPixmap() override
    {
        ++pictures;
        if (watch)
            watch();
        return XYGraphWidget::toPixmap();
    }

    int pictures = 0;
    std::function<void()> watch;
};

/// Presses Yes, Save or OK of a message box after a look at it.
ModalWatchdog::Answer agree(QString* title, QString* text)
{
    return [=](QWidget& window) {
        auto* box = qobject_cast<QMessageBox*>(&window);
        if (box == nullptr)
            return;
        *title = box->windowTitle();
        *text = box->text();
        (box->button(QMessageBox::Yes) != nullptr ? box->button(QMessageBox::Yes) : box->button(QMessageBox::Ok))
            ->click();
    };
}

} // namespace

class TestXYGraphFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVERIFY(folder.isValid());
        setSaveFilePath(folder.path() + '/');
    }

    void pictureOfAPlotWithoutACache()
    {
        Plot plot;
        const std::unique_ptr<QPixmap> picture(plot.toPixmap());
        QCOMPARE(picture->size(), QSize(400, 300));
        QImage seen(plot.size(), QImage::Format_RGB32);
        plot.render(&seen);
        QCOMPARE(picture->toImage().convertToFormat(QImage::Format_RGB32), seen);
    }

    void pictureOfAPlotWithACacheIsACopy()
    {
        Plot plot;
        plot.m_doubleBuffered = true;
        plot.m_pixmap = QPixmap(7, 5);
        plot.m_pixmap.fill(Qt::magenta);
        plot.refreshPixmap(); // stale, and copied all the same
        const std::unique_ptr<QPixmap> picture(plot.toPixmap());
        QCOMPARE(picture->toImage(), plot.m_pixmap.toImage());
        QVERIFY(plot.m_refreshRequired);
    }

    void pictureOfARotatedPlotIsNotRotated()
    {
        Plot plot;
        for (const double rotation : { 90.0, -90.0 }) {
            plot.m_rotation = rotation;
            const std::unique_ptr<QPixmap> picture(plot.toPixmap());
            QCOMPARE(picture->size(), QSize(300, 400));
            QVERIFY(plot.m_graphRect.height() > plot.m_graphRect.width());
        }
        plot.m_rotation = 45.0;
        const std::unique_ptr<QPixmap> picture(plot.toPixmap());
        QCOMPARE(picture->size(), QSize(400, 300));
    }

    void pictureOfAnEmptyPlotIsNull()
    {
        Plot plot;
        plot.resize(0, 0);
        const std::unique_ptr<QPixmap> picture(plot.toPixmap());
        QVERIFY(picture->isNull());
    }

    void saveAsksInTheSaveDirectory()
    {
        Plot plot;
        ModalWatchdog watchdog({ [&](QWidget& window) {
            auto* dialog = qobject_cast<QFileDialog*>(&window);
            QVERIFY(dialog);
            QCOMPARE(dialog->windowTitle(), QString("Save"));
            QCOMPARE(dialog->nameFilters(), QStringList { "Images (*.png *.jpg)" });
            QCOMPARE(QFileInfo(dialog->directory().path()).canonicalFilePath(),
                QFileInfo(folder.path()).canonicalFilePath());
            QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
            QCOMPARE(dialog->parentWidget(), &plot);
            dialog->reject();
        } });
        tarnis::testing::PlotMouse mouse(plot);
        QVERIFY(mouse.pick("Save PNG..."));
        QVERIFY(watchdog.isContent());
    }

    void savedPictureIsThePlot_data()
    {
        addColumns<QString, QByteArray>("name", "format");
        QTest::newRow("png") << "plot.png" << QByteArray("png");
        QTest::newRow("png in capitals") << "PLOT2.PNG" << QByteArray("png");
        QTest::newRow("jpg") << "plot.jpg" << QByteArray("jpeg");
        QTest::newRow("bmp, which no filter names") << "plot.bmp" << QByteArray("bmp");
    }
    void savedPictureIsThePlot()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, format);
        Plot plot;
        const std::unique_ptr<QPixmap> expected(plot.toPixmap());
        plot.pictures = 0;
        QVERIFY(QDir(folder.path()).mkpath("deeper"));
        const QString path = folder.filePath("deeper/" + name);
        ModalWatchdog watchdog({ acceptFile(path) });
        plot.onSave();
        QVERIFY(watchdog.isContent());
        QCOMPARE(plot.pictures, 1);
        QImageReader reader(path);
        reader.setDecideFormatFromContent(true);
        QCOMPARE(reader.format(), format);
        const QImage saved = reader.read();
        if (format == "jpeg")
            QCOMPARE(saved.size(), QSize(400, 300));
        else
            QCOMPARE(
                saved.convertToFormat(QImage::Format_RGB32), expected->toImage().convertToFormat(QImage::Format_RGB32));
        QCOMPARE(getSaveDir(), folder.path() + "/deeper/");

        // Exactly the bytes that the pixmap itself writes into a file of that name, with the default quality.
        const QString own = folder.filePath("own-" + name);
        QVERIFY(expected->save(own));
        QFile a(path);
        QFile b(own);
        QVERIFY(a.open(QIODevice::ReadOnly) && b.open(QIODevice::ReadOnly));
        QCOMPARE(a.readAll(), b.readAll());
    }

    void saveCancelled()
    {
        Plot plot;
        ModalWatchdog watchdog({ tarnis::testing::reject() });
        plot.onSave();
        QVERIFY(watchdog.isContent());
        QCOMPARE(plot.pictures, 0);
        QCOMPARE(getSaveDir(), folder.path() + '/');
    }

    void reportsAFailedSave_data()
    {
        addColumns<QString, bool>("name", "fullDisk");
        QTest::newRow("unknown format") << "plot.xyz" << false;
        QTest::newRow("no extension") << "plot" << false;
        QTest::newRow("cannot be opened") << "no/such/folder/plot.png" << false;
        QTest::newRow("full disk, small picture") << "full.png" << true;
        QTest::newRow("full disk, large picture") << "full.bmp" << true;
    }
    void reportsAFailedSave()
    {
        QFETCH(QString, name);
        QFETCH(bool, fullDisk);
        QVERIFY(QDir(folder.path()).mkpath("refused"));
        const QString path = folder.filePath("refused/" + name);
        QString title;
        QString text;
        QString question;
        QList<ModalWatchdog::Answer> answers { acceptFile(path) };
        if (fullDisk) {
            QVERIFY(QFile::link("/dev/full", path));
            answers.append(agree(&title, &question)); // it exists: overwrite?
        }
        answers.append(agree(&title, &text));
        Plot plot;
        ModalWatchdog watchdog(answers);
        plot.onSave();
        QVERIFY(watchdog.isContent());
        QCOMPARE(title, QString("Save Image"));
        QCOMPARE(text, QString("Save %1 failed.").arg(path));
        QCOMPARE(getSaveDir(), folder.path() + '/');
        if (!fullDisk)
            QVERIFY(!QFileInfo::exists(path)); // no partial file is left
    }

    void reportsTheFailedSaveOfAnEmptyPlot()
    {
        Plot plot;
        plot.m_doubleBuffered = true; // nothing painted yet
        QString title;
        QString text;
        ModalWatchdog watchdog({ acceptFile(folder.filePath("empty.png")), agree(&title, &text) });
        plot.onSave();
        QVERIFY(watchdog.isContent());
        QCOMPARE(text, QString("Save %1 failed.").arg(folder.filePath("empty.png")));
    }

    void printAsksFirst()
    {
        Plot plot;
        PrintedPage page;
        recordPages(plot.m_printer, page, QSize(3000, 2000));
        QStringList order;
        plot.watch = [&] { order << QStringLiteral("picture with %1 painters").arg(page.painters); };
        ModalWatchdog watchdog({ [&](QWidget& window) {
            order << QStringLiteral("dialog");
            QCOMPARE(window.parentWidget(), &plot);
            acceptPrint(folder.filePath("order.pdf"))(window);
        } });
        tarnis::testing::PlotMouse mouse(plot);
        QVERIFY(mouse.pick("Print..."));
        QVERIFY(watchdog.isContent());
        QCOMPARE(order, (QStringList { "dialog", "picture with 0 painters" }));
        QCOMPARE(page.painters, 1);
    }

    void printCancelled()
    {
        Plot plot;
        PrintedPage page;
        recordPages(plot.m_printer, page, QSize(3000, 2000));
        ModalWatchdog watchdog({ tarnis::testing::reject() });
        plot.onPrint();
        QVERIFY(watchdog.isContent());
        QCOMPARE(plot.pictures, 0);
        QCOMPARE(page.painters, 0);
    }

    void printFillsThePage_data()
    {
        addColumns<QSize, QSize, QRectF>("paper", "size", "target");
        addCase("wide paper, the height decides", QSize(3000, 2000), QSize(400, 300), QRectF(200, 200, 2133, 1600));
        addCase("tall paper, the width decides", QSize(2000, 3000), QSize(400, 300), QRectF(200, 200, 1600, 1200));
        addCase("odd paper", QSize(1239, 1754), QSize(320, 240), QRectF(123, 123, 993, 744));
    }
    void printFillsThePage()
    {
        QFETCH(QSize, paper);
        QFETCH(QSize, size);
        QFETCH(QRectF, target);
        Plot plot;
        plot.resize(size);
        plot.setTitle("Run 000123");
        PrintedPage page;
        recordPages(plot.m_printer, page, paper);
        ModalWatchdog watchdog({ acceptPrint(folder.filePath("page.pdf")) });
        plot.onPrint();
        QVERIFY(watchdog.isContent());
        QCOMPARE(page.pictures.size(), 1);
        QCOMPARE(page.pictures.first().pixmap.size(), size);
        QCOMPARE(page.pictures.first().target, target);
        QCOMPARE(page.texts.size(), 1);
        const auto& title = page.texts.first();
        QCOMPARE(title.text, QString("Run 000123"));
        QCOMPARE(title.pointSize, 16);
        const int margin = std::min(paper.width() / 10, paper.height() / 10);
        QVERIFY(title.position.y() < margin && title.position.y() > margin / 2.0);
        QVERIFY(title.position.x() > paper.width() * 0.3 && title.position.x() < paper.width() * 0.5);
    }

    void printKeepsTheSettings()
    {
        Plot plot;
        ModalWatchdog watchdog({ [&](QWidget& window) {
                                    auto* dialog = qobject_cast<QPrintDialog*>(&window);
                                    QCOMPARE(dialog->printer(), &plot.m_printer);
                                    acceptPrint(folder.filePath("first.pdf"))(window);
                                },
            [&](QWidget& window) {
                QCOMPARE(window.findChild<QLineEdit*>("filename")->text(), folder.filePath("first.pdf"));
                tarnis::testing::reject()(window);
            } });
        plot.onPrint();
        plot.onPrint();
        QVERIFY(watchdog.isContent());
    }

    void printThatCannotBeginStops()
    {
        Plot plot;
        PrintedPage page;
        page.refuses = true;
        recordPages(plot.m_printer, page, QSize(3000, 2000));
        ModalWatchdog watchdog({ acceptPrint(folder.filePath("refused.pdf")) });
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("QPainter::begin.*"));
        plot.onPrint();
        QVERIFY(watchdog.isContent());
        QVERIFY(page.pictures.isEmpty() && page.texts.isEmpty());
    }

    void printOfAnEmptyPlotHasItsTitle()
    {
        Plot plot;
        plot.m_doubleBuffered = true; // nothing painted yet
        plot.setTitle("Empty");
        PrintedPage page;
        recordPages(plot.m_printer, page, QSize(3000, 2000));
        ModalWatchdog watchdog({ acceptPrint(folder.filePath("empty.pdf")) });
        plot.onPrint();
        QVERIFY(watchdog.isContent());
        QVERIFY(page.pictures.isEmpty());
        QCOMPARE(page.texts.size(), 1);
    }

    void printWritesAPdf()
    {
        Plot plot;
        plot.setTitle("Title");
        const QString path = folder.filePath("plot.pdf");
        ModalWatchdog watchdog({ acceptPrint(path) });
        plot.onPrint();
        QVERIFY(watchdog.isContent());
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray pdf = file.readAll();
        QVERIFY(pdf.startsWith("%PDF-"));
        QVERIFY(pdf.contains("/Subtype /Image") && pdf.contains("/Width 400") && pdf.contains("/Height 300"));
        QVERIFY(pdf.contains("/Type /Font"));
    }

private:
    QTemporaryDir folder;
};

QTEST_MAIN(TestXYGraphFiles)
#include "tst_xygraphfiles.moc"
