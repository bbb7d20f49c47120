// The base class of all plots. It distinguishes between an outdated picture and a repaint of the screen. GUI thread
// only.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QPixmap>
#include <QWidget>

/// Paints through a cached picture, or straight to the screen. A subclass implements paint() and requests a new picture
/// with refreshPixmap(); any number of such calls between two paint events costs one redraw.
class TARNIS_EXPORT DoubleBufferedWidget : public QWidget {
    Q_OBJECT

public:
    /// Without the cache, see m_doubleBuffered.
    explicit DoubleBufferedWidget(QWidget* parent = nullptr);
    ~DoubleBufferedWidget() override;

    /// Draws into `rect`, in the painter's coordinates; null means the painter's viewport. The painter's window and
    /// viewport are in widget coordinates, independent of the device pixel ratio.
    virtual void paint(QPainter& painter, QRect* rect) = 0;

    /// Marks the picture stale and schedules an update. Draws nothing itself.
    void refreshPixmap();
    /// Draws the cached picture now if it is stale or was made for another screen resolution. For subclasses that
    /// override paintEvent().
    void refreshPixmapIfRequired();

Q_SIGNALS:
    void painting(); ///< the cached picture is prepared, but nothing is drawn on it yet; not emitted without the cache
    void painted(); ///< paint() has drawn the cached picture; not emitted without the cache

public:
    QPixmap m_pixmap; ///< the cached picture, at the device's resolution; replaced at every redraw
    bool m_doubleBuffered = false; ///< set once by the owner after construction
    double m_rotation = 0.0; ///< rotation of the cached picture in degrees; only 90 and -90 have an effect
    bool m_refreshRequired = false; ///< the cached picture is stale

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    /// Set by paint() if it covered every pixel of m_pixmap. The next redraw then skips the initial fill. If that
    /// paint() does not cover it, it is repeated on a filled pixmap.
    bool m_coversPicture = false;
};
