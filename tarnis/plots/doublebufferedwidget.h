// The canvas under every plot: it keeps apart that a picture is out of date and that the screen wants repainting. GUI
// thread only.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QPixmap>
#include <QWidget>

/// Paints through a cached picture, or straight to the screen. A subclass implements paint() and asks for a new picture
/// with refreshPixmap(); any number of such calls between two paint events costs one redraw.
class TARNIS_EXPORT DoubleBufferedWidget : public QWidget {
    Q_OBJECT

public:
    /// Without the cache, see m_doubleBuffered.
    explicit DoubleBufferedWidget(QWidget* parent = nullptr);
    ~DoubleBufferedWidget() override;

    /// Draws into `rect`, in the painter's coordinates; null means the painter's viewport. The painter's window and
    /// viewport are in the widget's own coordinates, whatever the device pixel ratio.
    virtual void paint(QPainter& painter, QRect* rect) = 0;

    /// Marks the picture stale and schedules an update. Draws nothing itself.
    void refreshPixmap();
    /// Draws the cached picture now if it is stale or made for another screen's resolution. For subclasses that
    /// override paintEvent().
    void refreshPixmapIfRequired();

Q_SIGNALS:
    void painting(); ///< the cached picture is prepared, nothing is drawn on it yet; not emitted without the cache
    void painted(); ///< paint() has returned on the cached picture; not emitted without the cache

public:
    QPixmap m_pixmap; ///< the cached picture, at the device's resolution; a new one at every redraw
    bool m_doubleBuffered = false; ///< set once by the owner after construction
    double m_rotation = 0.0; ///< of the cached picture, in degrees; only 90 and -90 have an effect
    bool m_refreshRequired = false; ///< the cached picture is stale

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    /// Told by a paint() that covers every pixel of m_pixmap: the next picture is not filled before it. A paint() that
    /// then does not cover it runs once more, on a filled one.
    bool m_coversPicture = false;
};
