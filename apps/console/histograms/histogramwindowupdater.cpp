#include "histograms/histogramwindowupdater.h"

#include "histograms/serverhistograms.h"
#include "windows/openwindows.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

namespace console {

namespace {

QCheckBox* autoUpdateOf(const QWidget& window)
{
    return window.findChild<QCheckBox*>(QStringLiteral("autoUpdateCheckBox"));
}

QPushButton* updateOf(const QWidget& window)
{
    return window.findChild<QPushButton*>(QStringLiteral("updatePushButton"));
}

bool isFrozen(const QWidget& window)
{
    const QCheckBox* const box = autoUpdateOf(window);
    return box && !box->isChecked();
}

/// Whether the user is working with the window: it may have an open menu or box, a partly typed line or a partly drawn
/// range.
bool isInHand(const QWidget& window)
{
    const QWidget* const focus = QApplication::focusWidget();
    const bool isTyped = qobject_cast<const QLineEdit*>(focus) || qobject_cast<const QAbstractSpinBox*>(focus);
    return QApplication::activePopupWidget() || QApplication::activeModalWidget()
        || QApplication::mouseButtons() != Qt::NoButton || (isTyped && isWithin(*focus, window));
}

/// Copies what the user has set with the window's controls.
void carryOver(const QWidget& old, QWidget& fresh)
{
    const auto typesOf = [](const QWidget& window) {
        return window.findChild<QComboBox*>(QStringLiteral("typeComboBox"));
    };
    if (typesOf(old) && typesOf(fresh))
        typesOf(fresh)->setCurrentIndex(typesOf(old)->currentIndex());
    if (!isFrozen(old) || !autoUpdateOf(fresh) || !updateOf(fresh))
        return;
    autoUpdateOf(fresh)->setChecked(false);
    updateOf(fresh)->click(); // requested by the user: only then is a frozen window recreated
}

} // namespace

HistogramWindowUpdater::HistogramWindowUpdater(OpenWindows& windows, const ServerHistograms& histograms)
    : m_windows(windows)
    , m_histograms(histograms)
{
    m_laterTimer.setSingleShot(true);
    connect(&m_laterTimer, &QTimer::timeout, this, &HistogramWindowUpdater::renewAll);
    connect(&histograms, &ServerHistograms::changed, this, &HistogramWindowUpdater::renewAll);
}

QWidget* HistogramWindowUpdater::show(const HistogramWindow& window)
{
    const auto made = [&] {
        m_shown[window.id] = window;
        return make(window.id);
    };
    return m_windows.show(window.id, made, [title = window.title, listed = window.listed] { return title(listed); });
}

QWidget* HistogramWindowUpdater::make(const QString& id)
{
    const HistogramWindow& shown = m_shown.at(id);
    QWidget* const window = shown.make(shown.listed);
    // Queued: the window is not replaced from inside its own signal.
    if (const QPushButton* const button = updateOf(*window))
        connect(
            button, &QPushButton::clicked, this, [this, id] { renew(id); }, Qt::QueuedConnection);
    if (const QCheckBox* const box = autoUpdateOf(*window))
        connect(
            box, &QCheckBox::toggled, this,
            [this, id](bool isOn) {
                if (isOn)
                    renew(id);
            },
            Qt::QueuedConnection);
    return window;
}

void HistogramWindowUpdater::renewAll()
{
    for (const auto& [id, shown] : m_shown) {
        const QWidget* const window = m_windows.find(id);
        if (window && !isFrozen(*window))
            renew(id);
    }
}

void HistogramWindowUpdater::renew(const QString& id)
{
    HistogramWindow& shown = m_shown.at(id);
    const HistogramWindow::Listed listed = m_histograms.find(shown.histogram);
    const QWidget* const old = m_windows.find(id);
    if (!old || !listed || listed == shown.listed)
        return;
    if (isInHand(*old)) {
        m_laterTimer.start(m_laterMs);
        return;
    }
    shown.listed = listed;
    const auto made = [&] {
        QWidget* const fresh = make(id);
        carryOver(*old, *fresh);
        return fresh;
    };
    m_windows.replace(id, made, [title = shown.title, listed] { return title(listed); });
}

} // namespace console
