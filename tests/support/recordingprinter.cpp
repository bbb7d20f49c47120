#include "support/recordingprinter.h"

#include <QPaintEngine>
#include <QPrintEngine>

namespace tarnis::testing {
namespace {

class RecordingEngine : public QPaintEngine {
public:
    explicit RecordingEngine(PrintedPage& page)
        : QPaintEngine(AllFeatures)
        , m_page(page)
    {
    }
    bool begin(QPaintDevice* /*device*/) override
    {
        if (m_page.refuses)
            return false;
        ++m_page.painters;
        setActive(true);
        return true;
    }
    bool end() override
    {
        setActive(false);
        return true;
    }
    void updateState(const QPaintEngineState& changed) override
    {
        if (changed.state() & DirtyTransform)
            m_transform = changed.transform();
    }
    void drawPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& /*source*/) override
    {
        m_page.pictures.append({ pixmap, m_transform.mapRect(target) });
    }
    void drawTextItem(const QPointF& position, const QTextItem& item) override
    {
        m_page.texts.append({ item.text(), item.font().pointSize(), m_transform.map(position) });
    }
    Type type() const override { return User; }

private:
    PrintedPage& m_page;
    QTransform m_transform;
};

class RecordingPrintEngine : public QPrintEngine {
public:
    explicit RecordingPrintEngine(const QSize& size)
        : m_size(size)
    {
    }
    void setProperty(PrintEnginePropertyKey key, const QVariant& value) override { m_properties[key] = value; }
    QVariant property(PrintEnginePropertyKey key) const override
    {
        const QRect page(QPoint(0, 0), m_size);
        if (key == PPK_PageRect || key == PPK_PaperRect)
            return page;
        return m_properties.value(key);
    }
    bool newPage() override { return true; }
    bool abort() override { return true; }
    int metric(QPaintDevice::PaintDeviceMetric metric) const override
    {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
        if (metric == QPaintDevice::PdmDevicePixelRatioF_EncodedA
            || metric == QPaintDevice::PdmDevicePixelRatioF_EncodedB)
            return QPaintDevice::encodeMetricF(metric, 1.0);
#endif
        switch (metric) {
        case QPaintDevice::PdmWidth:
            return m_size.width();
        case QPaintDevice::PdmHeight:
            return m_size.height();
        case QPaintDevice::PdmWidthMM:
            return static_cast<int>(m_size.width() * 25.4 / dotsPerInch);
        case QPaintDevice::PdmHeightMM:
            return static_cast<int>(m_size.height() * 25.4 / dotsPerInch);
        case QPaintDevice::PdmDpiX:
        case QPaintDevice::PdmDpiY:
        case QPaintDevice::PdmPhysicalDpiX:
        case QPaintDevice::PdmPhysicalDpiY:
            return dotsPerInch;
        case QPaintDevice::PdmNumColors:
            return 1 << 24;
        case QPaintDevice::PdmDepth:
            return 24;
        case QPaintDevice::PdmDevicePixelRatio:
            return 1;
        case QPaintDevice::PdmDevicePixelRatioScaled:
            return static_cast<int>(QPaintDevice::devicePixelRatioFScale());
        default:
            return 0;
        }
    }
    QPrinter::PrinterState printerState() const override
    {
        return QPrinter::Idle;
    }

private:
    static constexpr int dotsPerInch = 300;
    QSize m_size;
    QHash<int, QVariant> m_properties;
};

/// The printer does not delete engines that were set.
struct RecordingEngines {
    RecordingEngines(PrintedPage& page, const QSize& size)
        : paint(page)
        , print(size)
    {
    }
    RecordingEngine paint;
    RecordingPrintEngine print;
};

} // namespace

void recordPages(QPrinter& printer, PrintedPage& page, const QSize& size)
{
    struct PrinterAccess : QPrinter {
        using QPrinter::setEngines;
    };
    static QList<std::shared_ptr<RecordingEngines>> kept; // until the end of the test program
    kept.append(std::make_shared<RecordingEngines>(page, size));
    (printer.*(&PrinterAccess::setEngines))(&kept.last()->print, &kept.last()->paint);
}

} // namespace tarnis::testing
