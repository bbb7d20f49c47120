#include "tarnis/export/svgdevice_p.h"

#include <QBuffer>
#include <QFontInfo>
#include <QImage>
#include <QPaintEngine>
#include <QPainterPath>
#include <QPen>
#include <QPixmap>

#include <cmath>
#include <unordered_map>

namespace tarnis {

namespace {

constexpr int dotsPerInch = 96;

/// Seven digits: a precision of 0.001 pixels on any page.
QByteArray number(double value)
{
    return QByteArray::number(std::round(value * 1000.0) / 1000.0, 'g', 9);
}

QByteArray pointText(QPointF point)
{
    return number(point.x()) + ',' + number(point.y());
}

QByteArray colourAttributes(const char* name, const QColor& colour)
{
    QByteArray text = QByteArray(" ") + name + "=\"" + colour.name().toLatin1() + '"';
    if (colour.alpha() != 255)
        text += QByteArray(" ") + name + "-opacity=\"" + number(colour.alphaF()) + '"';
    return text;
}

QByteArray matrixAttribute(const QTransform& m)
{
    if (m.isIdentity())
        return {};
    return " transform=\"matrix(" + number(m.m11()) + ' ' + number(m.m12()) + ' ' + number(m.m21()) + ' '
        + number(m.m22()) + ' ' + number(m.dx()) + ' ' + number(m.dy()) + ")\"";
}

QByteArray pathData(const QPainterPath& path)
{
    QByteArray data;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        if (element.type == QPainterPath::MoveToElement)
            data += 'M';
        else if (element.type == QPainterPath::LineToElement)
            data += 'L';
        else
            data += element.type == QPainterPath::CurveToElement ? 'C' : ' ';
        data += pointText(element);
    }
    return data;
}

/// Returns an indexed image (one byte per pixel) if there are at most 256 colours, which is common for a map of counts.
/// This reduces the file size and the time to a third.
QImage withPalette(const QImage& image)
{
    constexpr qsizetype maxColours = 256;
    const bool opaque = image.format() == QImage::Format_RGB32;
    if (!opaque && image.format() != QImage::Format_ARGB32)
        return image;
    QImage indexed(image.size(), QImage::Format_Indexed8);
    std::unordered_map<QRgb, uchar> known;
    QList<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        const auto* const from = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        uchar* const to = indexed.scanLine(y);
        for (int x = 0; x < image.width(); ++x) {
            const auto [entry, isNew] = known.try_emplace(from[x], static_cast<uchar>(colours.size()));
            if (isNew && colours.size() == maxColours)
                return image;
            if (isNew)
                colours += opaque ? from[x] | 0xff000000U : from[x];
            to[x] = entry->second;
        }
    }
    indexed.setColorTable(colours);
    return indexed;
}

QByteArray pngOf(const QImage& image)
{
    QByteArray png;
    QBuffer buffer(&png);
    image.save(&buffer, "PNG");
    return png;
}

/// The image with fewer bits per colour channel.
QImage withRoundedColours(const QImage& image, int lostBits)
{
    const QRgb lost = ((1U << lostBits) - 1U) * 0x010101U;
    const QRgb middle = (1U << (lostBits - 1)) * 0x010101U;
    QImage rounded = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < rounded.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(rounded.scanLine(y));
        for (int x = 0; x < rounded.width(); ++x)
            line[x] = qAlpha(line[x]) == 0 ? 0U : (line[x] & ~lost) | middle;
    }
    return rounded;
}

/// Lossless, except for a large map of noise in more than a thousand colours, which does not compress. Its colours are
/// rounded to fit a palette, by at most 4 of 255 steps.
QByteArray smallPngOf(const QImage& image)
{
    constexpr qsizetype fewPixels = 100000;
    constexpr double manyBytes = 1.4; // per pixel: 2 MB as text for 1024 x 1024
    QByteArray png = pngOf(withPalette(image));
    const qsizetype pixels = qsizetype { image.width() } * image.height();
    if (pixels < fewPixels || double(png.size()) < manyBytes * double(pixels))
        return png;
    for (const int lostBits : { 1, 2, 3 }) {
        const QImage indexed = withPalette(withRoundedColours(image, lostBits));
        if (indexed.format() == QImage::Format_Indexed8)
            return pngOf(indexed);
    }
    return png;
}

} // namespace

class SvgEngine : public QPaintEngine {
public:
    SvgEngine()
        : QPaintEngine(QPaintEngine::AllFeatures)
    {
    }

    bool begin(QPaintDevice* /*device*/) override
    {
        m_body.clear();
        m_definitions.clear();
        return true;
    }
    bool end() override { return true; }
    Type type() const override { return User; }

    void updateState(const QPaintEngineState& changes) override
    {
        const DirtyFlags changed = changes.state();
        if (changed.testFlag(DirtyPen))
            m_pen = changes.pen();
        if (changed.testFlag(DirtyBrush))
            m_brush = changes.brush();
        if (changed.testFlag(DirtyTransform))
            m_transform = changes.transform();
        if (changed.testFlag(DirtyHints))
            m_isSmooth = changes.renderHints().testFlag(QPainter::Antialiasing);
        if (changed.testFlag(DirtyFont))
            m_font = changes.font();
        if (changed.testFlag(DirtyClipPath))
            clip(changes.transform().map(changes.clipPath()), changes.clipOperation());
        if (changed.testFlag(DirtyClipRegion)) {
            QPainterPath path;
            path.addRegion(changes.clipRegion());
            clip(changes.transform().map(path), changes.clipOperation());
        }
        if (changed.testFlag(DirtyClipEnabled) && !changes.isClipEnabled())
            clip({}, Qt::NoClip);
    }

    void drawPath(const QPainterPath& path) override { element("path d=\"" + pathData(path) + '"', fill() + stroke()); }

    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override
    {
        QByteArray list;
        for (int i = 0; i < count; ++i)
            list += (i == 0 ? "" : " ") + pointText(points[i]);
        // Without the attribute viewers spread such a line over two pixels, and it fades. Dashes may merge by it.
        const bool isAlongAxis = count == 2 && (points[0].x() == points[1].x() || points[0].y() == points[1].y());
        const QByteArray edges =
            isAlongAxis && !m_isSmooth && m_pen.style() == Qt::SolidLine ? " shape-rendering=\"crispEdges\"" : "";
        if (mode == PolylineMode)
            element("polyline points=\"" + list + '"', " fill=\"none\"" + stroke() + edges);
        else
            element("polygon points=\"" + list + '"', fill() + stroke());
    }

    void drawImage(
        const QRectF& target, const QImage& image, const QRectF& source, Qt::ImageConversionFlags /*flags*/) override
    {
        const QRect part = source.toRect();
        // Both attributes: of SVG 1.1 and of current viewers.
        element("image" + rectAttributes(target)
                + " preserveAspectRatio=\"none\" image-rendering=\"optimizeSpeed\" style=\"image-rendering:pixelated\""
                  " xlink:href=\"data:image/png;base64,"
                + smallPngOf(part == image.rect() ? image : image.copy(part)).toBase64() + '"',
            {});
    }

    void drawPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source) override
    {
        drawImage(target, pixmap.toImage(), source, Qt::AutoColor);
    }

    void drawTextItem(const QPointF& position, const QTextItem& item) override
    {
        if (m_pen.style() == Qt::NoPen || item.text().trimmed().isEmpty())
            return;
        const QFont font = item.font();
        QByteArray text = "text x=\"" + number(position.x()) + "\" y=\"" + number(position.y()) + "\" font-family=\""
            + font.family().toHtmlEscaped().toUtf8() + "\" font-size=\"" + number(QFontInfo(font).pixelSize()) + '"';
        if (font.weight() != QFont::Normal)
            text += " font-weight=\"" + QByteArray::number(int(font.weight())) + '"';
        if (font.italic())
            text += " font-style=\"italic\"";
        // Keeps labels aligned if the viewer uses another font.
        text += " textLength=\"" + number(item.width()) + "\" lengthAdjust=\"spacingAndGlyphs\" xml:space=\"preserve\"";
        element(text, colourAttributes("fill", m_pen.color()), item.text().toHtmlEscaped().toUtf8());
    }

    QByteArray definitions() const
    {
        return m_definitions.isEmpty() ? QByteArray() : "<defs>\n" + m_definitions + "</defs>\n";
    }
    const QByteArray& body() const { return m_body; }

private:
    void element(const QByteArray& start, const QByteArray& style, const QByteArray& content = {})
    {
        m_body += '<' + start + style + matrixAttribute(m_transform);
        const QByteArray name = start.left(start.indexOf(' '));
        // The clip is in page units, so it is set on an element without a matrix.
        if (!m_clipName.isEmpty())
            m_body.insert(m_body.lastIndexOf('<' + name), "<g clip-path=\"url(#" + m_clipName + ")\">");
        m_body += content.isEmpty() ? QByteArray("/>") : '>' + content + "</" + name + '>';
        m_body += m_clipName.isEmpty() ? "\n" : "</g>\n";
    }

    static QByteArray rectAttributes(const QRectF& rect)
    {
        return " x=\"" + number(rect.x()) + "\" y=\"" + number(rect.y()) + "\" width=\"" + number(rect.width())
            + "\" height=\"" + number(rect.height()) + '"';
    }

    void clip(const QPainterPath& path, Qt::ClipOperation operation)
    {
        if (operation == Qt::IntersectClip && !m_clip.isEmpty())
            m_clip = m_clip.intersected(path);
        else
            m_clip = operation == Qt::NoClip ? QPainterPath() : path;
        m_clipName.clear();
        if (operation == Qt::NoClip)
            return;
        const QByteArray data = pathData(m_clip);
        m_clipName = "clip" + QByteArray::number(qHash(data), 16);
        if (!m_definitions.contains("id=\"" + m_clipName + '"'))
            m_definitions += "<clipPath id=\"" + m_clipName + "\"><path d=\"" + data + "\"/></clipPath>\n";
    }

    QByteArray stroke() const
    {
        if (m_pen.style() == Qt::NoPen)
            return " stroke=\"none\"";
        QByteArray text = colourAttributes("stroke", m_pen.color());
        const double width = m_pen.widthF() > 0.0 ? m_pen.widthF() : 1.0;
        text += " stroke-width=\"" + number(width) + '"';
        if (m_pen.capStyle() != Qt::FlatCap)
            text += m_pen.capStyle() == Qt::RoundCap ? " stroke-linecap=\"round\"" : " stroke-linecap=\"square\"";
        if (m_pen.joinStyle() == Qt::BevelJoin)
            text += " stroke-linejoin=\"bevel\"";
        if (m_pen.style() != Qt::SolidLine) {
            QByteArray dashes;
            for (const double length : m_pen.dashPattern())
                dashes += (dashes.isEmpty() ? "" : ",") + number(length * width);
            text += " stroke-dasharray=\"" + dashes + '"';
        }
        return text;
    }

    QByteArray fill()
    {
        if (m_brush.style() == Qt::NoBrush)
            return " fill=\"none\"";
        if (m_brush.style() == Qt::LinearGradientPattern)
            return " fill=\"url(#" + gradient(*static_cast<const QLinearGradient*>(m_brush.gradient())) + ")\"";
        return colourAttributes("fill", m_brush.color());
    }

    QByteArray gradient(const QLinearGradient& gradient)
    {
        QByteArray stops;
        for (const QGradientStop& stop : gradient.stops()) {
            stops += "<stop offset=\"" + number(stop.first) + "\" stop-color=\"" + stop.second.name().toLatin1()
                + "\" stop-opacity=\"" + number(stop.second.alphaF()) + "\"/>";
        }
        QByteArray name = "gradient" + QByteArray::number(++m_gradients);
        m_definitions += "<linearGradient id=\"" + name + "\" gradientUnits=\"userSpaceOnUse\" x1=\""
            + number(gradient.start().x()) + "\" y1=\"" + number(gradient.start().y()) + "\" x2=\""
            + number(gradient.finalStop().x()) + "\" y2=\"" + number(gradient.finalStop().y()) + "\">" + stops
            + "</linearGradient>\n";
        return name;
    }

    QByteArray m_definitions;
    QByteArray m_body;
    QPen m_pen;
    QBrush m_brush;
    QFont m_font;
    QTransform m_transform;
    bool m_isSmooth = false;
    QPainterPath m_clip; ///< in units of the page
    QByteArray m_clipName; ///< empty without a clip
    int m_gradients = 0;
};

SvgDevice::SvgDevice(QSize size, double finest)
    : ExactDevice(finest)
    , m_size(size)
    , m_engine(std::make_unique<SvgEngine>())
{
}

SvgDevice::~SvgDevice() = default;

QPaintEngine* SvgDevice::paintEngine() const
{
    return m_engine.get();
}

int SvgDevice::metric(PaintDeviceMetric metric) const
{
    constexpr double millimetresPerDot = 25.4 / dotsPerInch;
    switch (metric) {
    case PdmWidth:
        return m_size.width();
    case PdmHeight:
        return m_size.height();
    case PdmWidthMM:
        return int(std::lround(m_size.width() * millimetresPerDot));
    case PdmHeightMM:
        return int(std::lround(m_size.height() * millimetresPerDot));
    case PdmNumColors:
        return -1;
    case PdmDepth:
        return 32;
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return dotsPerInch;
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return int(devicePixelRatioFScale());
    default:
        return QPaintDevice::metric(metric);
    }
}

QByteArray SvgDevice::file(const QString& title, const QString& description) const
{
    const QByteArray width = QByteArray::number(m_size.width());
    const QByteArray height = QByteArray::number(m_size.height());
    QByteArray text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" "
                      "xmlns:xlink=\"http://www.w3.org/1999/xlink\" version=\"1.1\" width=\""
        + width + "\" height=\"" + height + "\" viewBox=\"0 0 " + width + ' ' + height + "\">\n";
    if (!title.isEmpty())
        text += "<title>" + title.toHtmlEscaped().toUtf8() + "</title>\n";
    if (!description.isEmpty())
        text += "<desc>" + description.toHtmlEscaped().toUtf8() + "</desc>\n";
    return text + m_engine->definitions() + m_engine->body() + "</svg>\n";
}

} // namespace tarnis
