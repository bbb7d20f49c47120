#include "histograms/rowcaption.h"

#include <tarnis/plots/multivectorgraphwidget.h>

#include <QAction>
#include <QCoreApplication>
#include <QStringList>

namespace console {

namespace {

struct RowCaption {
    Q_DECLARE_TR_FUNCTIONS(RowCaption)
};

/// Access to protected members of the plot's curves.
class PlotRecords : public MultiVectorGraphWidget {
public:
    static const QList<Data>& of(MultiVectorGraphWidget& plot) { return plot.*(&PlotRecords::m_data); }
    static bool isEnabled(MultiVectorGraphWidget& plot, qsizetype index)
    {
        return index >= of(plot).size() || of(plot).at(index).enable;
    }
};

constexpr char columnChart[] = "Column Chart"; // text of the library, from its catalogue

} // namespace

QList<int> visibleRows(MultiVectorGraphWidget& plot, int first, int last)
{
    QList<int> rows;
    for (int row = first; row <= last; ++row) {
        if (PlotRecords::isEnabled(plot, row - first))
            rows.append(row);
    }
    return rows;
}

void showAsColumns(const MultiVectorGraphWidget& plot)
{
    const QList<QAction*> actions = plot.actions();
    for (QAction* const action : actions) {
        if (action->text() == MultiVectorGraphWidget::staticMetaObject.tr(columnChart, nullptr, -1))
            action->setChecked(true);
    }
}

QString rangesText(const QList<int>& numbers)
{
    QStringList ranges;
    for (qsizetype begin = 0, end = 0; begin < numbers.size(); begin = end) {
        end = begin + 1;
        while (end < numbers.size() && numbers.at(end) == numbers.at(end - 1) + 1)
            ++end;
        const QString first = QString::number(numbers.at(begin));
        ranges.append(end - begin == 1 ? first : QStringLiteral("%1-%2").arg(first).arg(numbers.at(end - 1)));
    }
    return ranges.join(QLatin1String(", "));
}

QString rowCaption(const QString& name, const QList<int>& visible, int rows)
{
    if (visible.isEmpty())
        return RowCaption::tr("No curve is visible");
    const QString numbers = QStringLiteral("%1 %2").arg(name, rangesText(visible)).trimmed();
    return visible.size() < rows ? RowCaption::tr("%1 of %2").arg(numbers).arg(rows) : numbers;
}

} // namespace console
