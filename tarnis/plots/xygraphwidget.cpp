// State, ranges and actions. The rest of the class: _ticks (ticks, margins, mapping), _paint, _mouse (tools and
// events), _edit (editors of the axis ends), _range (selection of an X range), _files (saving and printing).
#include "tarnis/plots/xygraphwidget.h"

#include "tarnis/foundation/retranslator.h"
#include "tarnis/plots/labelcache_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plothooks_p.h"

#include <QAction>

QColor XYGraphWidget::m_backGroundColor = Qt::black;

namespace {

double identity(double value, void* /*data*/)
{
    return value;
}

QAction* addPlain(QWidget* widget, const char* text)
{
    auto* action = new QAction(widget);
    tarnis::setTranslatedText(*action, *widget, [text] { return XYGraphWidget::tr(text); });
    widget->addAction(action);
    return action;
}

QAction* addCheckable(QWidget* widget, const char* text, bool checked)
{
    QAction* action = addPlain(widget, text);
    action->setCheckable(true);
    action->setChecked(checked);
    return action;
}

} // namespace

XYGraphWidget::XYGraphWidget(QWidget* parent)
    : DoubleBufferedWidget(parent)
    , m_rubberBand(QRubberBand::Rectangle, this)
    , m_funcX2Tick(identity)
    , m_funcTick2X(identity)
    , m_labels(std::make_unique<tarnis::LabelCache>())
{
    QPalette colours = palette();
    colours.setBrush(QPalette::Window, Qt::lightGray);
    setPalette(colours);
    setAutoFillBackground(true);
    setAttribute(Qt::WA_OpaquePaintEvent); // paint() fills the complete widget, so it need not be cleared before

    m_actAutoScaleX = addCheckable(this, QT_TR_NOOP("Auto Scale X"), true);
    m_actAutoScaleY = addCheckable(this, QT_TR_NOOP("Auto Scale Y"), true);
    m_actRectangle = addCheckable(this, QT_TR_NOOP("Rectangle"), false);
    m_actZoomIn = addCheckable(this, QT_TR_NOOP("Zoom In"), false);
    m_actZoomOut = addCheckable(this, QT_TR_NOOP("Zoom Out"), false);
    m_actMove = addCheckable(this, QT_TR_NOOP("Move"), false);
    QAction* reset = addPlain(this, QT_TR_NOOP("Reset"));
    m_actShowGrid = addCheckable(this, QT_TR_NOOP("Show Grid"), true);
    QAction* print = addPlain(this, QT_TR_NOOP("Print..."));
    QAction* save = addPlain(this, QT_TR_NOOP("Save PNG..."));
    m_actSelectXRange = addCheckable(this, QT_TR_NOOP("Select X Range"), false);
    m_actClearXRange = addPlain(this, QT_TR_NOOP("Clear X Range"));
    m_actSelectXRange->setVisible(false);
    m_actClearXRange->setVisible(false);
    m_actClearXRange->setEnabled(false); // an invisible action is disabled anyway; this keeps it disabled when it is
                                         // shown

    connect(m_actAutoScaleX, &QAction::toggled, this, &XYGraphWidget::onAutoScaleX);
    connect(m_actAutoScaleY, &QAction::toggled, this, &XYGraphWidget::onAutoScaleY);
    connect(m_actRectangle, &QAction::triggered, this, &XYGraphWidget::onRectangle);
    connect(m_actZoomIn, &QAction::triggered, this, &XYGraphWidget::onZoomIn);
    connect(m_actZoomOut, &QAction::triggered, this, &XYGraphWidget::onZoomOut);
    connect(m_actMove, &QAction::triggered, this, &XYGraphWidget::onMove);
    connect(reset, &QAction::triggered, this, &XYGraphWidget::onReset);
    connect(m_actShowGrid, &QAction::triggered, this, &XYGraphWidget::onShowGrid);
    connect(print, &QAction::triggered, this, &XYGraphWidget::onPrint);
    connect(save, &QAction::triggered, this, &XYGraphWidget::onSave);
    connect(m_actSelectXRange, &QAction::toggled, this, &XYGraphWidget::onSelectXRange);
    connect(m_actClearXRange, &QAction::triggered, this, &XYGraphWidget::onClearXRange);
}

XYGraphWidget::~XYGraphWidget() = default;

bool tarnis::PlotAccess::hasTickFunction(const XYGraphWidget& plot)
{
    return plot.m_funcX2Tick != identity;
}

bool tarnis::PlotAccess::namesSecondScale(const XYGraphWidget& plot)
{
    return plot.m_hooks != nullptr && plot.m_hooks->positionName();
}

QString tarnis::PlotAccess::positionNameX(const XYGraphWidget& plot)
{
    return namesSecondScale(plot) ? *plot.m_hooks->positionName() : plot.m_nameX;
}

void XYGraphWidget::viewTouched()
{
    if (m_hooks != nullptr)
        m_hooks->touch();
}

void XYGraphWidget::dataTouched()
{
    if (m_hooks != nullptr)
        m_hooks->touchData();
}

bool XYGraphWidget::isReadOutByTool() const
{
    return m_hooks != nullptr && m_hooks->hasReadOut();
}

void XYGraphWidget::init(const QString& nameX, const QString& nameY, double maxX, double maxY, bool autoX, bool autoY)
{
    m_manualX = false;
    m_manualY = false;
    m_nameX = nameX;
    m_nameY = nameY;
    m_minX = m_initMinX = 0.0;
    m_minY = m_initMinY = 0.0;
    m_maxX = adjustAxis(maxX);
    adjustAxisY(maxY);
    m_initMaxX = maxX;
    m_initMaxY = maxY;
    m_initAutoScaleX = autoX;
    initMode(autoX, autoY);
}

void XYGraphWidget::initManualX(double min, double max)
{
    const tarnis::AxisRange previous { m_minX, m_maxX };
    m_manualX = true;
    m_minX = m_initMinX = min;
    m_maxX = m_initMaxX = max;
    if (m_hooks != nullptr)
        m_hooks->initialized(Qt::Horizontal, previous);
}

void XYGraphWidget::initManualY(double min, double max)
{
    const tarnis::AxisRange previous { m_minY, m_maxY };
    m_manualY = true;
    m_minY = m_initMinY = min;
    m_maxY = m_initMaxY = max;
    if (m_hooks != nullptr)
        m_hooks->initialized(Qt::Vertical, previous);
}

void XYGraphWidget::initMode(bool autoX, bool autoY)
{
    onAutoScaleX(autoX);
    onAutoScaleY(autoY);
    updateModeAndCursor();
}

void XYGraphWidget::setMinMaxX(double min, double max)
{
    m_minX = min;
    m_maxX = max;
    viewTouched();
}

void XYGraphWidget::setMinMaxY(double min, double max)
{
    m_minY = min;
    m_maxY = max;
    viewTouched();
}

bool XYGraphWidget::getMinMaxX(double& min, double& max)
{
    min = m_minX;
    max = m_maxX;
    return m_autoScaleX;
}

bool XYGraphWidget::getMinMaxY(double& min, double& max)
{
    min = m_minY;
    max = m_maxY;
    return m_autoScaleY;
}

void XYGraphWidget::getInitMinMaxX(double& min, double& max) const
{
    min = m_initMinX;
    max = m_initMaxX;
}

void XYGraphWidget::getInitMinMaxY(double& min, double& max) const
{
    min = m_initMinY;
    max = m_initMaxY;
}

void XYGraphWidget::setInitMaxX(double max)
{
    if (tarnis::plotEqual(max, m_initMaxX))
        return;
    m_initMaxX = max;
    m_maxX = m_manualX ? max : adjustAxis(max);
    viewTouched();
    refreshPixmap();
}

void XYGraphWidget::setNameX(const QString& name)
{
    if (name == m_nameX)
        return;
    m_nameX = name;
    refreshPixmap();
}

void XYGraphWidget::setNameY(const QString& name)
{
    if (name == m_nameY)
        return;
    m_nameY = name;
    refreshPixmap();
}

QString XYGraphWidget::getNameX() const
{
    return m_nameX;
}

QString XYGraphWidget::getNameY() const
{
    return m_nameY;
}

void XYGraphWidget::setNotes(const QString& notes)
{
    m_notes = notes;
}

void XYGraphWidget::setTitle(const QString& title)
{
    m_title = title;
}

void XYGraphWidget::setDecimalX(int decimal)
{
    m_decimalX = decimal;
}

void XYGraphWidget::setDecimalY(int decimal)
{
    m_decimalY = decimal;
}

int XYGraphWidget::getDecimalX() const
{
    return m_decimalX;
}

int XYGraphWidget::getDecimalY() const
{
    return m_decimalY;
}

void XYGraphWidget::setLogScaleY(bool on)
{
    m_logScaleY = on;
    viewTouched();
    refreshPixmap();
}

void XYGraphWidget::SetPaintGridLineOnGraph(bool on)
{
    m_paintGridOnGraph = on;
    refreshPixmap();
}

void XYGraphWidget::setFuncX2Tick(double (*x2tick)(double, void*), double (*tick2x)(double, void*), void* userData)
{
    m_funcX2Tick = x2tick != nullptr ? x2tick : identity;
    m_funcTick2X = tick2x != nullptr ? tick2x : identity;
    m_funcUserData = userData;
}

void XYGraphWidget::onAutoScaleX(bool checked)
{
    m_autoScaleX = checked;
    viewTouched(); // also the range, which a subclass fits next
    m_actAutoScaleX->setChecked(checked);
}

void XYGraphWidget::onAutoScaleY(bool checked)
{
    m_autoScaleY = checked;
    viewTouched();
    m_actAutoScaleY->setChecked(checked);
}
