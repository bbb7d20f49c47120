// Every control of the library's windows has an accessible name.
#include "support/scriptedserver.h"

#include "tarnis/dialogs/dialogchecklist.h"
#include "tarnis/dialogs/graph1ddialog.h"
#include "tarnis/dialogs/graph2ddialog.h"
#include "tarnis/dialogs/graph2dfilterdialog.h"
#include "tarnis/dialogs/namevalue.h"
#include "tarnis/dialogs/namevaluelistdialog.h"
#include "tarnis/dialogs/selectcheckeddialog.h"
#include "tarnis/dialogs/selectdirectorydialog.h"
#include "tarnis/dialogs/selectpathdialog.h"
#include "tarnis/dialogs/statdialog.h"
#include "tarnis/peak/peaksearchdialog.h"
#include "tarnis/plots/viewselectedroi.h"
#include "tarnis/plots/xrangeinputdialog.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/plots/xyrangeinputdialog.h"
#include "tarnis/server/tarnissession.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QTest>

#include <functional>
#include <memory>

namespace {

using tarnis::testing::ScriptedServer;

TarnisSession* newSession()
{
    static const QByteArray prompt("> ");
    return new TarnisSession(ScriptedServer::host(), ScriptedServer::closedPort(), &prompt, nullptr);
}

TarnisSession* model()
{
    static const std::unique_ptr<TarnisSession> session(newSession());
    return session.get();
}

/// A part of a control created by Qt, which is named by the control.
bool isInside(const QWidget& widget)
{
    const QWidget* const parent = widget.parentWidget();
    return qobject_cast<const QComboBox*>(parent) || qobject_cast<const QAbstractSpinBox*>(parent)
        || qobject_cast<const QAbstractItemView*>(parent) || parent->inherits("QComboBoxPrivateContainer");
}

bool isControl(const QWidget& widget)
{
    return (qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QAbstractItemView*>(&widget)
               || qobject_cast<const QAbstractSpinBox*>(&widget) || qobject_cast<const QComboBox*>(&widget)
               || qobject_cast<const QLineEdit*>(&widget) || qobject_cast<const QProgressBar*>(&widget)
               || qobject_cast<const XYGraphWidget*>(&widget))
        && !isInside(widget);
}

QString nameOf(QWidget* widget)
{
    const QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(widget);
    return interface != nullptr ? interface->text(QAccessible::Name) : QString();
}

struct Form {
    const char* name;
    int controls; ///< minimum number
    std::function<QWidget*()> make;
};

const QList<Form>& forms()
{
    static const QList<Form> all {
        { "1D window", 5,
            [] {
                return new Graph1DDialog(nullptr, "Title", "X", 0, 100, 1000, 0, "Group", {}, "hist", 0, 3, nullptr);
            } },
        { "2D window", 5,
            [] {
                return new Graph2DDialog(nullptr, "Title", "X", 2, 0, 1, 1, 0, "Y", 2, 0, 1, 1, 0, {}, "map", nullptr);
            } },
        { "filter", 28, [] { return new Graph2DFilterDialog(nullptr); } },
        { "path", 5, [] { return new SelectPathDialog("/", model(), nullptr); } },
        { "directory", 5, [] { return new SelectDirectoryDialog("/", model(), nullptr); } },
        { "table", 3, [] { return new NameValueListDialog(QList<NameValue>(), nullptr, "Name"); } },
        { "statistics", 3, [] { return new StatDialog(newSession(), "Title", "stat", nullptr); } },
        { "check boxes", 5, [] { return new SelectCheckedDialog(nullptr); } },
        { "check list", 5, [] { return new DialogCheckList("Title", nullptr); } },
        { "peaks", 5, [] { return new PeakSearchDialog(nullptr); } },
        { "regions", 7, [] { return new ViewSelectedROI(0, QRect(0, 0, 9, 9), nullptr); } },
        { "range", 2, [] { return new XRangeInputDialog("X", 'g', 6, nullptr); } },
        { "ranges", 4, [] { return new XYRangeInputDialog(nullptr, 'g', 6); } },
    };
    return all;
}

} // namespace

class TestAccessibleNames : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void controlsAreNamed_data()
    {
        QTest::addColumn<int>("form");
        for (qsizetype i = 0; i < forms().size(); ++i)
            QTest::newRow(forms().at(i).name) << int(i);
    }

    void controlsAreNamed()
    {
        QFETCH(int, form);
        const std::unique_ptr<QWidget> window(forms().at(form).make());
        int controls = 0;
        for (QWidget* const widget : window->findChildren<QWidget*>()) {
            if (!isControl(*widget))
                continue;
            ++controls;
            QVERIFY2(!nameOf(widget).isEmpty(), qPrintable(widget->objectName()));
        }
        QVERIFY2(controls >= forms().at(form).controls, qPrintable(QString::number(controls)));
    }
};

QTEST_MAIN(TestAccessibleNames)
#include "tst_accessiblenames.moc"
