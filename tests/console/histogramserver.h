// A server with two histograms, and a console with the histogram chooser.
#pragma once

#include "console/consolefixture.h"
#include "histograms/histogramchooser.h"
#include "support/wait.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>

namespace tarnis::testing {

using console::HistogramChooser;
using console::ServerState;

inline const QByteArray twoHistograms(
    "OK:\ntime: kind=1d rows=2 bins=4 min=0 max=40000 label=Time unit=us\n"
    "image: kind=2d binsx=2 minx=0 maxx=10 labelx=Horizontal unitx=mm binsy=3 miny=-1 "
    "maxy=1 labely=Vertical unity=mm\n");

/// A server with a curve and a map.
class HistogramServer : public ScriptedServer {
public:
    explicit HistogramServer(const QByteArray& list = twoHistograms)
    {
        answer("hists", { Step::text(list) });
        answer("hist1d time 0 1 bins:4", { Step::doubles({ 1, 2, 3, 4, 5, 6, 7, 8 }, "OK:\n") });
        answer("hist2d image bins:2x3", { Step::doubles({ 1, 2, 3, 4, 5, 6 }, "OK: exported 2 x 3 y\n") });
    }
};

/// A console with the open, filled list.
struct HistogramChooserDriver {
    explicit HistogramChooserDriver(ConsoleFixture& fixture) { reopen(fixture); }
    void reopen(ConsoleFixture& fixture) { chooser = fixture.open<HistogramChooser>("histograms"); }
    bool shows(const QString& text) const
    {
        return eventually([&] {
            const auto* const label = chooser->findChild<QLabel*>(QStringLiteral("labelDescription"));
            return label->text().contains(text);
        });
    }
    bool isFilled(int count) const
    {
        return eventually([&] { return chooser->count() == count; });
    }
    QPushButton& ok() const
    {
        return *chooser->findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"))->button(QDialogButtonBox::Ok);
    }
    void press(const char* name) const { tarnis::testing::press(child<QPushButton>(*chooser, name)); }
    void accept() const { tarnis::testing::press(ok()); }
    /// True if only the second histogram is opened.
    bool opensTheMap() const
    {
        if (!isFilled(2))
            return false;
        chooser->setChecked(1, true);
        accept();
        return eventually([&] { return chooser.isNull(); });
    }

    QPointer<HistogramChooser> chooser;
};

inline QStringList titlesOf(const QList<QWidget*>& windows)
{
    QStringList titles;
    for (const QWidget* window : windows)
        titles.append(window->windowTitle());
    return titles;
}

} // namespace tarnis::testing
