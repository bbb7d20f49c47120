// A live 2D window with access to its members.
#pragma once

#include "dialogs/livewindow.h"

#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QTest>

namespace tarnis::testing {

inline QList<QList<double>> rowsOf(const Graph2DDialog& window)
{
    QList<QList<double>> rows;
    window.getGraphWidget()->getData(rows);
    return rows;
}

/// A window with access to its members: 3 by 2 bins, X from 0 to 30, Y from 5 to 7.
class Window : public Graph2DDialog {
public:
    explicit Window(TarnisSession* model, const QStringList& initCmds = {})
        : Graph2DDialog(model, "Title", "East", 3, 0, 30, 1, 1, "North", 2, 5, 7, 1, 2, initCmds, "map", nullptr)
    {
    }
    using Graph2DDialog::binsX;
    using Graph2DDialog::binsY;
    using Graph2DDialog::filterDialogs;
    using Graph2DDialog::session;
    using Graph2DDialog::timer;

    bool drawReplies = true;

    bool onResultExInfo(const QList<QString>& lines) override
    {
        return Graph2DDialog::onResultExInfo(lines) && drawReplies;
    }
    template <typename Widget> Widget& child(const char* name) { return *findChild<Widget*>(QLatin1String(name)); }
    QList<QList<double>> rows() { return rowsOf(*this); }
    void reply(const QString& text, const QByteArray& payload)
    {
        timer->stop();
        PTarnisCmd command = answered("map", true, text);
        result(command, payload);
    }
};

using WindowPointer = std::unique_ptr<Window>;
using ConnectedWindow = Connected<Window>;

inline WindowPointer shown(TarnisSession* model, const QStringList& initCmds = {})
{
    auto window = std::make_unique<Window>(model, initCmds);
    window->setAttribute(Qt::WA_DeleteOnClose, false); // the test deletes it
    window->show();
    return window;
}

inline QList<double> ramp(int count)
{
    QList<double> values;
    for (int i = 1; i <= count; ++i)
        values.append(i);
    return values;
}

} // namespace tarnis::testing
