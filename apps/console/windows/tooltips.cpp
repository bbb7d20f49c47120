#include "windows/tooltips.h"

#include "app/controlhelp.h"

#include <tarnis/plots/xy2dgraphwidget.h>

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QHash>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVariant>

namespace console {

namespace {

struct ToolTips {
    Q_DECLARE_TR_FUNCTIONS(ToolTips)
};

constexpr char ownProperty[] = "isToolTipOfTheConsole";

/// By the object names in the library's forms.
QHash<QString, QString> liveWindowTips()
{
    return {
        { QStringLiteral("typeComboBox"), ToolTips::tr("Show each curve by itself, or one curve with the sum of all") },
        { QStringLiteral("toolButton"), ToolTips::tr("Choose which curves are visible") },
        { QStringLiteral("updatePushButton"), ToolTips::tr("Request new data from the server now") },
        { QStringLiteral("autoUpdateCheckBox"), ToolTips::tr("Request new data from the server continuously") },
        { QStringLiteral("filterPushButton"),
            ToolTips::tr("Smooth or sharpen a copy of this map in a separate window") },
    };
}

QHash<QString, QString> plotBoxTips()
{
    return {
        { QStringLiteral("lineEditThreshold"),
            ToolTips::tr("Ignore peaks lower than this percentage of the highest value") },
        { QStringLiteral("lineEditWidth"), ToolTips::tr("Expected width of a peak, in bins") },
        { QStringLiteral("pushButtonSearch"),
            ToolTips::tr("Search the visible part of the curve for peaks and fit them") },
        { QStringLiteral("displayPointsCheckBox"), ToolTips::tr("Mark the points that each fit has used") },
        { QStringLiteral("xMinEdit"), ToolTips::tr("Lower end of the range along X; Enter sets it") },
        { QStringLiteral("xMaxEdit"), ToolTips::tr("Upper end of the range along X; Enter sets it") },
        { QStringLiteral("yMinEdit"), ToolTips::tr("Lower end of the range along Y; Enter sets it") },
        { QStringLiteral("yMaxEdit"), ToolTips::tr("Upper end of the range along Y; Enter sets it") },
        { QStringLiteral("x1SpinBox"), ToolTips::tr("Left edge of the chosen region") },
        { QStringLiteral("y1SpinBox"), ToolTips::tr("Lower edge of the chosen region") },
        { QStringLiteral("x2SpinBox"), ToolTips::tr("Right edge of the chosen region") },
        { QStringLiteral("y2SpinBox"), ToolTips::tr("Upper edge of the chosen region") },
        { QStringLiteral("deleteButton"), ToolTips::tr("Delete the chosen region") },
    };
}

QHash<QString, QString> listTips()
{
    return {
        { QStringLiteral("buttonCheckAll"), ToolTips::tr("Check every entry of the list") },
        { QStringLiteral("buttonUncheckAll"), ToolTips::tr("Uncheck every entry of the list") },
        { QStringLiteral("buttonInvert"), ToolTips::tr("Check what is unchecked, and uncheck the rest") },
        { QStringLiteral("selectAllPushButton"), ToolTips::tr("Check the selected cells") },
        { QStringLiteral("unselectAllPushButton"), ToolTips::tr("Uncheck the selected cells") },
        { QStringLiteral("reversePushButton"),
            ToolTips::tr("Check what is unchecked among the selected cells, and the reverse") },
        { QStringLiteral("applyPushButton"), ToolTips::tr("Show the checked curves") },
        { QStringLiteral("closeButton"), ToolTips::tr("Close this window") },
        { QStringLiteral("simulatorRadio"), ToolTips::tr("For trying the console without a detector") },
        { QStringLiteral("localRadio"), ToolTips::tr("The server ends with the console") },
        { QStringLiteral("remoteRadio"), ToolTips::tr("The server keeps running when the console is closed") },
        { QStringLiteral("browseButton"), ToolTips::tr("Choose from a list") },
        { QStringLiteral("divisorLineEdit"), ToolTips::tr("The sum of the weighted bins is divided by this number") },
        { QStringLiteral("alertButton"), ToolTips::tr("Run the action of the alert") },
        { QStringLiteral("dirComboBox"), ToolTips::tr("The open folder and the folders above it") },
        { QStringLiteral("fileNameLineEdit"), ToolTips::tr("Name of a file or folder in the open folder") },
    };
}

QString standardTip(QDialogButtonBox::StandardButton button)
{
    switch (button) {
    case QDialogButtonBox::Ok:
        return ToolTips::tr("Accept and close");
    case QDialogButtonBox::Cancel:
        return ToolTips::tr("Close without a change");
    case QDialogButtonBox::Close:
        return ToolTips::tr("Close this window");
    case QDialogButtonBox::Save:
        return ToolTips::tr("Save to a file");
    case QDialogButtonBox::Apply:
        return ToolTips::tr("Use the values and keep the window open");
    case QDialogButtonBox::Discard:
        return ToolTips::tr("Continue without saving");
    default:
        return {};
    }
}

/// The object name of the delete-all button is used by other windows too.
QString regionTip(const QWidget& control)
{
    const bool isRegionList = control.objectName() == u"clearButton" && control.parentWidget()
        && control.window()->findChild<QWidget*>(QStringLiteral("x1SpinBox"));
    return isRegionList ? ToolTips::tr("Delete all regions") : QString();
}

bool isInput(const QWidget& control)
{
    return qobject_cast<const QLineEdit*>(&control) || qobject_cast<const QAbstractSpinBox*>(&control)
        || qobject_cast<const QComboBox*>(&control);
}

QString tipFor(const QWidget& control, const QHash<QString, QString>& tips)
{
    if (QString tip = tips.value(control.objectName()); !tip.isEmpty())
        return tip;
    if (const auto* const box = qobject_cast<const QDialogButtonBox*>(control.parentWidget())) {
        auto* const button = qobject_cast<QAbstractButton*>(const_cast<QWidget*>(&control));
        return standardTip(box->standardButton(button));
    }
    if (QString tip = regionTip(control); !tip.isEmpty())
        return tip;
    const auto* const button = qobject_cast<const QPushButton*>(&control);
    if (button && button->isCheckable() && qobject_cast<const XY2DGraphWidget*>(control.parentWidget()))
        return ToolTips::tr("Fit the limits of the colours to the data");
    return isInput(control) ? control.accessibleName() : QString();
}

/// "*" is the library's label for all.
void explainStar(QWidget& window)
{
    auto* const table = window.findChild<QTableWidget*>(QStringLiteral("tableWidget"));
    if (!table || !window.findChild<QWidget*>(QStringLiteral("reversePushButton")))
        return;
    table->horizontalHeader()->setToolTip(ToolTips::tr("* means all: its check mark applies to all of them"));
    table->verticalHeader()->setToolTip(table->horizontalHeader()->toolTip());
}

} // namespace

void addToolTips(QWidget& window)
{
    QHash<QString, QString> tips = liveWindowTips();
    tips.insert(plotBoxTips());
    tips.insert(listTips());
    const auto controls = window.findChildren<QWidget*>();
    for (QWidget* const control : controls) {
        const bool isControl = qobject_cast<QAbstractButton*>(control) || isInput(*control);
        const bool isOwn = control->property(ownProperty).toBool() || control->toolTip().isEmpty();
        const QString tip = isControl ? tipFor(*control, tips) : QString();
        if (tip.isEmpty())
            continue;
        const bool isPrevious = control->toolTip() == control->property(helpProperty).toString();
        control->setProperty(helpProperty, tip);
        if (!isOwn || (!control->isEnabled() && !control->toolTip().isEmpty() && !isPrevious))
            continue; // shows why it is disabled
        control->setProperty(ownProperty, true);
        control->setToolTip(tip);
    }
    explainStar(window);
}

} // namespace console
