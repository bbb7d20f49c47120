#include "tarnis/export/plotpicture_p.h"

#include "tarnis/export/svgdevice_p.h"
#include "tarnis/foundation/saving_p.h"
#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/mapcolouring_p.h"
#include "tarnis/plots/multivectorgraphwidget.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotoverlay.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/xy2dgraphwidget.h"

#include <QBuffer>
#include <QFontInfo>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QSignalBlocker>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace tarnis {

namespace {

constexpr double screenDpi = 96.0; // of the layout
constexpr double printDpi = 600.0; // the detail that vector files must show
constexpr double maxPixels = 4e8;
constexpr int maxSide = 32767; // limit of the raster engine
constexpr int headingHeight = 28;

/// Restores the properties of a plot that painting changes.
class LayoutKeeper {
public:
    LayoutKeeper(XYGraphWidget& plot, QSize size, const PictureOptions& options)
        : m_plot(plot)
        , m_layout(PlotAccess::layout(plot))
        , m_title(PlotAccess::title(plot))
    {
        if (PlotHooks* const hooks = PlotHooks::existing(plot))
            hooks->setPictureSize(size);
        if (!options.heading.isEmpty())
            plot.setTitle({}); // a second title
        if (auto* const map = qobject_cast<XY2DGraphWidget*>(&plot);
            map && PlotAccess::colouring(std::as_const(*map))) {
            m_levels = PlotAccess::levels(*map); // those of sums and means depend on the pixels
            // Controls beside the colour bar are not in the picture.
            m_besideBar = PlotAccess::reserveBesideBar(*map, 0);
        }
    }
    ~LayoutKeeper()
    {
        if (PlotHooks* const hooks = PlotHooks::existing(m_plot))
            hooks->setPictureSize({});
        PlotAccess::setLayout(m_plot, m_layout);
        m_plot.setTitle(m_title);
        if (m_levels) {
            auto& map = static_cast<XY2DGraphWidget&>(m_plot);
            PlotAccess::reserveBesideBar(map, m_besideBar);
            PlotAccess::setLevels(map, *m_levels);
        }
    }
    LayoutKeeper(const LayoutKeeper&) = delete;
    LayoutKeeper& operator=(const LayoutKeeper&) = delete;

private:
    XYGraphWidget& m_plot;
    PlotAccess::Layout m_layout;
    QString m_title;
    std::optional<AxisRange> m_levels; ///< of a map's colours that tools have chosen
    int m_besideBar = 0; ///< of the widget
};

/// Pixels of a resolution other than the screen's.
class ExactImage : public QImage, public ExactDevice {
public:
    ExactImage(QSize size, double finest)
        : QImage(size, QImage::Format_RGB32)
        , ExactDevice(finest)
    {
    }
};

class PdfDevice : public QPdfWriter, public ExactDevice {
public:
    PdfDevice(QIODevice* device, QSize size)
        : QPdfWriter(device)
        , ExactDevice(screenDpi / printDpi)
    {
        constexpr double pointsPerPixel = 72.0 / screenDpi;
        setPageSize(QPageSize(QSizeF(size) * pointsPerPixel, QPageSize::Point, QString(), QPageSize::ExactMatch));
        setPageMargins(QMarginsF());
        setResolution(int(screenDpi));
    }
};

/// A printer that belongs to the caller.
class PageDevice : public QPaintDevice, public ExactDevice {
public:
    PageDevice(QPrinter& printer, double finest)
        : ExactDevice(finest)
        , m_printer(printer)
    {
    }
    QPaintEngine* paintEngine() const override { return m_printer.paintEngine(); }

protected:
    int metric(PaintDeviceMetric metric) const override { return (m_printer.*Printer::metricOf)(metric); }

private:
    struct Printer : QPrinter {
        static constexpr auto metricOf = &Printer::metric;
    };
    QPrinter& m_printer;
};

} // namespace

QSize pictureSize(const XYGraphWidget& plot)
{
    return PlotMapping::of(plot).rotation() == 0.0 ? plot.size() : plot.size().transposed();
}

PlotPicture::PlotPicture(XYGraphWidget& plot, const PictureOptions& options)
    : m_plot(plot)
    , m_options(options)
    , m_size(options.size.isEmpty() ? pictureSize(plot) : options.size)
{
}

/// The margins follow the labels of the colour bar, which follow the data.
void PlotPicture::settleLayout() const
{
    if (auto* const many = qobject_cast<MultiVectorGraphWidget*>(&m_plot))
        many->onPainting();
    auto* const map = qobject_cast<XY2DGraphWidget*>(&m_plot);
    if (map == nullptr)
        return;
    // The bar grows with its labels, which follow the height that the plot leaves it.
    constexpr int maxPasses = 4;
    QImage scratch(m_size, QImage::Format_RGB32);
    for (int pass = 0; pass < maxPasses; ++pass) {
        const int margin = PlotAccess::margin(m_plot).right();
        QPainter painter(&scratch);
        painter.setFont(textFont());
        QRect rect = plotRect();
        m_plot.paint(painter, &rect);
        painter.setClipping(false);
        paintBar(painter, PlotAccess::colourBar(*map));
        if (PlotAccess::margin(m_plot).right() == margin)
            return;
    }
}

/// In pixels, because devices convert points differently.
QFont PlotPicture::textFont() const
{
    QFont font = m_plot.font();
    font.setPixelSize(QFontInfo(font).pixelSize());
    return font;
}

/// What the heading leaves.
QRect PlotPicture::plotRect() const
{
    return QRect(QPoint(0, 0), m_size).adjusted(0, m_options.heading.isEmpty() ? 0 : headingHeight, 0, 0);
}

void PlotPicture::paintBar(QPainter& painter, ColorBarWidget& bar) const
{
    const QRect rect = plotRect();
    const int width = PlotAccess::margin(m_plot).right();
    QRect inside(0, 0, width, rect.height() - 2 * bar.y());
    painter.save();
    painter.translate(m_size.width() - width, rect.top() + bar.y());
    painter.setPen(Qt::black);
    bar.paint(painter, &inside);
    painter.restore();
}

void PlotPicture::paint(QPainter& painter) const
{
    const QFont font = textFont();
    painter.setFont(font);
    QRect rect = plotRect();
    const PlotStyling* const styling = stylingOf(&m_plot);
    painter.fillRect(QRect(QPoint(0, 0), m_size), styling != nullptr ? styling->surround() : QColor(Qt::lightGray));
    if (rect.top() > 0) {
        QFont bold = font;
        bold.setBold(true);
        painter.setFont(bold);
        painter.setPen(styling != nullptr ? styling->foreground() : QColor(Qt::black));
        painter.drawText(QRect(0, 0, m_size.width(), rect.top()), Qt::AlignCenter, m_options.heading);
        painter.setFont(font);
    }
    m_plot.paint(painter, &rect);
    painter.setClipping(false);
    auto* const map = qobject_cast<XY2DGraphWidget*>(&m_plot);
    if (map != nullptr)
        map->paintSelectedRect(painter);
    painter.setClipping(false);
    PlotOverlay::paintAll(m_plot, painter);
    if (map != nullptr) {
        const QSignalBlocker settled(PlotAccess::colourBar(*map));
        paintBar(painter, PlotAccess::colourBar(*map));
    }
}

QImage PlotPicture::image() const
{
    const double scale = m_options.dpi / screenDpi;
    const QSizeF exact = QSizeF(m_size) * scale;
    if (!(exact.width() >= 1.0) || !(exact.height() >= 1.0) || exact.width() > maxSide || exact.height() > maxSide
        || exact.width() * exact.height() > maxPixels)
        return {};
    const LayoutKeeper keeper(m_plot, m_size, m_options);
    settleLayout();
    const bool screen = scale == 1.0;
    ExactImage detailed(screen ? QSize() : exact.toSize(), 1.0 / scale);
    QImage plain(screen ? m_size : QSize(), QImage::Format_RGB32);
    QImage& target = screen ? plain : detailed;
    QPainter painter;
    if (!painter.begin(&target))
        return {};
    painter.scale(scale, scale);
    paint(painter);
    painter.end();
    QImage image = screen ? plain : static_cast<const QImage&>(detailed).copy();
    // Set last: Qt derives font sizes from it.
    const int dotsPerMetre = int(std::lround(m_options.dpi / 0.0254));
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);
    return image;
}

QString PlotPicture::description() const
{
    QStringList parts;
    if (!m_options.source.isEmpty())
        parts += m_options.source;
    if (m_options.time.isValid())
        parts += m_options.time.toUTC().toString(Qt::ISODateWithMs);
    return parts.join(QStringLiteral(", "));
}

QByteArray PlotPicture::png() const
{
    QImage picture = image();
    if (picture.isNull())
        return {};
    if (!m_options.title.isEmpty())
        picture.setText(QStringLiteral("Title"), m_options.title);
    if (!m_options.source.isEmpty())
        picture.setText(QStringLiteral("Source"), m_options.source);
    if (m_options.time.isValid())
        picture.setText(QStringLiteral("Creation Time"), m_options.time.toUTC().toString(Qt::ISODateWithMs));
    QByteArray content;
    QBuffer buffer(&content);
    return picture.save(&buffer, "PNG") ? content : QByteArray();
}

QByteArray PlotPicture::pdf() const
{
    const LayoutKeeper keeper(m_plot, m_size, m_options);
    settleLayout();
    QByteArray content;
    QBuffer buffer(&content);
    if (!buffer.open(QIODevice::WriteOnly))
        return {};
    PdfDevice device(&buffer, m_size);
    device.setTitle(m_options.title);
    device.setCreator(QStringLiteral("Tarnis"));
    QPainter painter;
    if (!painter.begin(&device))
        return {};
    paint(painter);
    painter.end();
    return content;
}

QString PlotPicture::print(QPrinter& printer) const
{
    const LayoutKeeper keeper(m_plot, m_size, m_options);
    settleLayout();
    const QRect page = printer.pageLayout().paintRectPixels(printer.resolution());
    const double scale = std::min(page.width() / double(m_size.width()), page.height() / double(m_size.height()));
    return printDocument(printer, [&] {
        PageDevice device(printer, 1.0 / scale);
        QPainter painter;
        if (!painter.begin(&device))
            return false;
        painter.translate((page.width() - scale * m_size.width()) / 2.0, 0.0);
        painter.scale(scale, scale);
        paint(painter);
        return painter.end();
    });
}

QByteArray PlotPicture::svg() const
{
    const LayoutKeeper keeper(m_plot, m_size, m_options);
    settleLayout();
    SvgDevice device(m_size, screenDpi / printDpi);
    QPainter painter;
    if (!painter.begin(&device))
        return {};
    paint(painter);
    painter.end();
    return device.file(m_options.title, description());
}

} // namespace tarnis
