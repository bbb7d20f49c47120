// Deletes the window of every modal box of the library while the box is open, as a host or a socket error may do.
#include "support/modalwatchdog.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/dialogs/namevalue.h>
#include <tarnis/dialogs/namevaluelistdialog.h>
#include <tarnis/dialogs/selectdirectorydialog.h>
#include <tarnis/dialogs/selectpathdialog.h>
#include <tarnis/peak/peaksearchdialog.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/viewselectedroi.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/server/tarnissession.h>

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <functional>

namespace {

using tarnis::testing::ScriptedServer;

/// Deletes `subject` as soon as a modal window is open, and then closes a modal window that was not deleted with it.
class Deleter {
public:
    explicit Deleter(QWidget* subject)
        : m_subject(subject)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { check(); });
        m_timer.start(5);
    }
    bool hasSeenABox() const { return m_seen; }

private:
    void check()
    {
        if (QApplication::activeModalWidget() == nullptr)
            return;
        m_seen = true;
        delete m_subject.data();
        if (auto* const left = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
            left->reject();
    }

    QPointer<QWidget> m_subject;
    QTimer m_timer;
    bool m_seen = false;
};

PTarnisCmd answered(const QString& name, bool binary)
{
    PTarnisCmd command(new TarnisCmd("command"));
    command->m_cmdName = name;
    command->m_bBinary = binary;
    return command;
}

class Map : public Graph2DDialog {
public:
    Map()
        : Graph2DDialog(nullptr, "Map", "X", 2, 0, 1, 1, 0, "Y", 2, 0, 1, 1, 0, {}, "map", nullptr)
    {
        show();
    }
};

class Curves : public Graph1DDialog {
public:
    explicit Curves(double max = 10)
        : Graph1DDialog(nullptr, "Curves", "X", 0, max, 1, 0, "", {}, "hist", 0, 0, nullptr)
    {
        show();
    }
};

/// A chooser's session gets no answers here: replies are passed to the slot.
TarnisSession& unheard()
{
    static const QByteArray prompt("> ");
    static TarnisSession session(ScriptedServer::host(), ScriptedServer::closedPort(), &prompt, nullptr);
    return session;
}

template <typename Chooser> Chooser* chooserOf(const QString& lsName)
{
    auto* const chooser = new Chooser("/data", &unheard(), nullptr);
    chooser->show();
    chooser->result(answered(lsName, false), "OK:\nb.txt\n");
    chooser->template findChild<QLineEdit*>("fileNameLineEdit")->setText("b.txt");
    return chooser;
}

XY2DGraphWidget* mapPlot()
{
    auto* const plot = new XY2DGraphWidget(nullptr);
    plot->init("x", "y", 2, 2, true, true);
    plot->setData(0, { 1, 2 }, 2, false);
    plot->setData(1, { 3, 4 }, 4, true);
    plot->resize(400, 300);
    plot->show();
    return plot;
}

template <typename Widget> QWidget* shown(Widget* widget)
{
    widget->show();
    return widget;
}

void pick(QWidget& plot, const QString& entry)
{
    for (QAction* const action : plot.actions()) {
        if (action->text() == entry)
            action->trigger();
    }
}

struct BoxCase {
    const char* name;
    std::function<QWidget*()> make;
    std::function<void(QWidget&)> open;
};

void call(QWidget& widget, const char* slot)
{
    QVERIFY2(QMetaObject::invokeMethod(&widget, slot, Qt::DirectConnection), slot);
}

const QList<BoxCase>& boxes()
{
    static const QList<BoxCase> all {
        { "2D window: refusal", [] { return new Map; },
            [](QWidget& window) { static_cast<Map&>(window).result(answered({}, false), "NG: no"); } },
        { "2D window: mismatch", [] { return new Map; },
            [](QWidget& window) { static_cast<Map&>(window).result(answered({}, true), "12345678"); } },
        { "2D window: socket error", [] { return new Map; },
            [](QWidget& window) { static_cast<Map&>(window).error(1, "gone"); } },
        { "1D window: refusal", [] { return new Curves; },
            [](QWidget& window) { static_cast<Curves&>(window).result(answered({}, false), "NG: no"); } },
        { "1D window: no axis", [] { return new Curves(0); },
            [](QWidget& window) { static_cast<Curves&>(window).result(answered({}, true), "12345678"); } },
        { "1D window: index", [] { return new Curves(0); },
            [](QWidget& window) {
                PTarnisCmd command = answered({}, true);
                command->m_replyText = "OK: (0 1 4)";
                const double pair[] = { 7, 1 };
                static_cast<Curves&>(window).result(
                    command, QByteArray(reinterpret_cast<const char*>(pair), sizeof pair));
            } },
        { "path: file not found", [] { return chooserOf<SelectPathDialog>("pathSelectLs"); },
            [](QWidget& window) {
                auto& chooser = static_cast<SelectPathDialog&>(window);
                chooser.setExt({ "csv" }, true, false);
                chooser.onAccepted();
            } },
        { "path: overwrite", [] { return chooserOf<SelectPathDialog>("pathSelectLs"); },
            [](QWidget& window) {
                auto& chooser = static_cast<SelectPathDialog&>(window);
                chooser.setExt({ "txt" }, false, true);
                chooser.result(answered("pathSelectLs", false), "OK:\nb.txt\n");
                chooser.onAccepted();
            } },
        { "directory: overwrite", [] { return chooserOf<SelectDirectoryDialog>("ls"); },
            [](QWidget& window) {
                auto& chooser = static_cast<SelectDirectoryDialog&>(window);
                chooser.setExt({}, true, {});
                chooser.onAccepted();
            } },
        { "table: save", [] { return new NameValueListDialog(QList<NameValue>(), nullptr, "Name"); },
            [](QWidget& window) { call(window, "onSave"); } },
        { "map: image", [] { return mapPlot(); }, [](QWidget& plot) { call(plot, "onSave"); } },
        { "map: CSV", [] { return mapPlot(); }, [](QWidget& plot) { call(plot, "onSaveCsv"); } },
        { "map: print", [] { return mapPlot(); }, [](QWidget& plot) { call(plot, "onPrint"); } },
        { "map: print with cuts", [] { return mapPlot(); },
            [](QWidget& plot) {
                pick(plot, "1D Cut");
                TRY_VERIFY(plot.findChildren<VectorGraphWidget*>().size() == 2);
                call(plot, "onPrint");
            } },
        { "map: colour", [] { return mapPlot(); }, [](QWidget& plot) { call(plot, "onMaxColor"); } },
        { "curve: image", [] { return shown(new VectorGraphWidget(nullptr)); },
            [](QWidget& plot) { call(plot, "onSave"); } },
        { "curve: CSV", [] { return shown(new VectorGraphWidget(nullptr)); },
            [](QWidget& plot) { call(plot, "onSaveCsv"); } },
        { "curve: print", [] { return shown(new VectorGraphWidget(nullptr)); },
            [](QWidget& plot) { call(plot, "onPrint"); } },
        { "curve: edit a limit", [] { return shown(new VectorGraphWidget(nullptr)); },
            [](QWidget& plot) { call(plot, "onEditMinY"); } },
        { "curves: CSV", [] { return shown(new MultiVectorGraphWidget(nullptr)); },
            [](QWidget& plot) { call(plot, "onSaveCsv"); } },
        { "regions: not editable", [] { return shown(new ViewSelectedROI(0, QRect(0, 0, 9, 9), nullptr)); },
            [](QWidget& view) {
                static_cast<ViewSelectedROI&>(view).setEditable(false);
                static_cast<ViewSelectedROI&>(view).addRoi(QRect(1, 1, 2, 2));
            } },
        { "regions: delete", [] { return shown(new ViewSelectedROI(0, QRect(0, 0, 9, 9), nullptr)); },
            [](QWidget& view) {
                static_cast<ViewSelectedROI&>(view).addRoi(QRect(1, 1, 2, 2));
                call(view, "on_deleteButton_clicked");
            } },
        { "regions: clear", [] { return shown(new ViewSelectedROI(0, QRect(0, 0, 9, 9), nullptr)); },
            [](QWidget& view) {
                static_cast<ViewSelectedROI&>(view).addRoi(QRect(1, 1, 2, 2));
                call(view, "on_clearButton_clicked");
            } },
        { "peaks: threshold", [] { return shown(new PeakSearchDialog(nullptr)); },
            [](QWidget& dialog) {
                dialog.findChild<QLineEdit*>("lineEditThreshold")->setText("101");
                call(dialog, "onSearch");
            } },
        { "peaks: width", [] { return shown(new PeakSearchDialog(nullptr)); },
            [](QWidget& dialog) {
                dialog.findChild<QLineEdit*>("lineEditWidth")->setText("1");
                call(dialog, "onSearch");
            } },
    };
    return all;
}

} // namespace

class TestDeletedWhileOpen : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    void survivesItsDeletionWhileABoxIsOpen_data()
    {
        QTest::addColumn<int>("box");
        for (qsizetype i = 0; i < boxes().size(); ++i)
            QTest::newRow(boxes().at(i).name) << int(i);
    }

    void survivesItsDeletionWhileABoxIsOpen()
    {
        QFETCH(int, box);
        const QPointer<QWidget> subject(boxes().at(box).make());
        const Deleter deleter(subject);
        boxes().at(box).open(*subject);
        QVERIFY(deleter.hasSeenABox());
        QVERIFY(subject.isNull());
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }
};

QTEST_MAIN(TestDeletedWhileOpen)
#include "tst_deletedwhileopen.moc"
