// Groups of plots of the console that show the same ranges.
#pragma once

#include <tarnis/tools/axislink.h>
#include <tarnis/tools/interactivetool.h>

#include <QString>

#include <memory>
#include <vector>

namespace tarnis {
class PlotToolBar;
}

namespace console {

/// The membership of a plot in one of the groups A, B and C. Axes of the same group share their range if they have the
/// same name, which includes the unit: the X axes of all plots, and the Y axes of maps. Axes with energies also need
/// the same calibration. The counts of curves are not linked. The group is part of the stored view.
class PlotLink : public tarnis::InteractiveTool {
    Q_OBJECT
public:
    explicit PlotLink(XYGraphWidget* plot);
    ~PlotLink() override;

    static QStringList groups(); ///< the names of the groups
    QString group() const { return m_group; } ///< empty: none
    void join(const QString& group); ///< leaves the previous group; the first plot of a group sets its ranges

    QString stateName() const override;
    QJsonObject saveState() const override;
    void restoreState(const QJsonObject& state) override;

Q_SIGNALS:
    void groupChanged();

private:
    struct Joined {
        Qt::Orientation axis;
        std::shared_ptr<tarnis::AxisLink> link; // shared by the members of the group
    };
    void link(Qt::Orientation axis);
    std::shared_ptr<tarnis::AxisLink> linkOf(const QString& quantity) const;

    QString m_group;
    std::vector<Joined> m_joined;
};

/// Adds a menu with the groups to the front of the bar.
void addLinks(tarnis::PlotToolBar& bar);

} // namespace console
