// SVG 1.1 files. Qt's own generator ignores clipping and the source rectangle of images, so that a zoomed curve would
// be drawn across the axes.
#pragma once

#include "tarnis/plots/exactdrawing_p.h"

#include <QByteArray>
#include <QPaintDevice>
#include <QSize>
#include <QString>

#include <memory>

namespace tarnis {

class SvgEngine;

/// Collects what a painter draws. Units are pixels of 1/96 inch.
class SvgDevice : public QPaintDevice, public ExactDevice {
public:
    SvgDevice(QSize size, double finest);
    ~SvgDevice() override;

    /// The complete file with title and description. Call it after the painter has ended.
    QByteArray file(const QString& title, const QString& description) const;

    QPaintEngine* paintEngine() const override;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    QSize m_size;
    std::unique_ptr<SvgEngine> m_engine;
};

} // namespace tarnis
