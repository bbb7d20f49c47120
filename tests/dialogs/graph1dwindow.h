// A live 1D window with access to its members.
#pragma once

#include "dialogs/livewindow.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/plots/multivectorgraphwidget.h>

#include <QTest>

namespace tarnis::testing {

struct Options {
    double xMin = 0.0;
    double xMax = 100.0;
    int resolution = 1;
    QString desc = "Ch";
    QStringList initCmds;
    int start = 0;
    int end = 1;
};

/// A window with access to its members, deleted by the test unless it has deleted itself.
class Window : public Graph1DDialog {
public:
    explicit Window(TarnisSession* model, const Options& options = {})
        : Graph1DDialog(model, "Title", "Time", options.xMin, options.xMax, options.resolution, 2, options.desc,
            options.initCmds, "hist", options.start, options.end, nullptr)
    {
    }
    using Graph1DDialog::extendLastBin;
    using Graph1DDialog::pairMode;
    using Graph1DDialog::session;
    using Graph1DDialog::timer;

    int resultCalls = 0;
    bool drawReplies = true;
    QList<QStringList> seenLines;

    bool onResultExInfo(const QList<QString>& lines) override
    {
        seenLines.append(lines);
        return Graph1DDialog::onResultExInfo(lines) && drawReplies;
    }
    void result(PTarnisCmd command, const QByteArray& payload) override
    {
        ++resultCalls;
        Graph1DDialog::result(command, payload); // may delete the window
    }
    template <typename Widget> Widget& child(const char* name) { return *findChild<Widget*>(QLatin1String(name)); }
    QList<double> series(int index)
    {
        QList<double> values;
        if (!getGraphWidget()->getData(index, values))
            values = { -1 };
        return values;
    }
};

using WindowPointer = std::unique_ptr<Window>;
using ConnectedWindow = Connected<Window>;

inline WindowPointer shown(TarnisSession* model, const Options& options = {})
{
    auto window = std::make_unique<Window>(model, options);
    window->setAttribute(Qt::WA_DeleteOnClose, false); // the test deletes it
    window->show();
    return window;
}

inline Options pairs()
{
    Options options;
    options.xMax = 0.0;
    options.end = 0;
    return options;
}

} // namespace tarnis::testing
