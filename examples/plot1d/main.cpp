// Plots the columns of a text file, one curve per column, without a server.
//
// usage: plot1d [--x] [--log] [--picture PNG] FILE
//   FILE       numbers in lines, between blanks, commas or semicolons; lines that do not begin with a number are
//   headings
//   --x        the first column holds the X values, evenly spaced
//   --log      logarithmic Y axis
//   --picture  writes the plot to an image and quits; needs no display with QT_QPA_PLATFORM=offscreen
#include <tarnis/plots/multivectorgraphwidget.h>

#include <QAction>
#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

/// The numbers of the file, column by column. Missing fields are 0 if later lines have them.
QList<QList<double>> readColumns(QTextStream& text)
{
    static const QRegularExpression separators(QStringLiteral("[\\s,;]+"));
    QList<QList<double>> columns;
    qsizetype lines = 0;
    for (QString line; text.readLineInto(&line);) {
        const QStringList words = line.split(separators, Qt::SkipEmptyParts);
        for (qsizetype i = 0; i < words.size(); ++i) {
            bool isNumber = false;
            const double value = words.at(i).toDouble(&isNumber);
            if (!isNumber)
                break;
            if (i == columns.size())
                columns.append(QList<double>());
            columns[i].resize(lines);
            columns[i].append(value);
        }
        lines = columns.isEmpty() ? 0 : columns.constFirst().size();
    }
    return columns;
}

/// Uses the first column for the X axis, which extends half a step beyond its ends, because a sample is at the middle
/// of its bin.
void useX(MultiVectorGraphWidget& plot, const QList<double>& x)
{
    const double halfStep = x.size() > 1 ? (x.constLast() - x.constFirst()) / (2.0 * (x.size() - 1)) : 0.5;
    plot.initManualX(x.constFirst() - halfStep, x.constLast() + halfStep);
    plot.setManualIndex(x); // the first column of a saved CSV file
    plot.setDecimalX(3);
    plot.setNameX(QStringLiteral("X"));
}

void showColumns(MultiVectorGraphWidget& plot, const QList<QList<double>>& columns)
{
    plot.resizeData(static_cast<int>(columns.size()));
    for (int i = 0; i < columns.size(); ++i)
        plot.setData(i, columns.at(i), *std::max_element(columns.at(i).cbegin(), columns.at(i).cend()));
    plot.refreshPixmap();
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QCommandLineParser options;
    options.addHelpOption();
    options.addOption({ QStringLiteral("x"), QStringLiteral("The first column holds the X values, evenly spaced.") });
    options.addOption({ QStringLiteral("log"), QStringLiteral("Logarithmic Y axis.") });
    options.addOption(
        { QStringLiteral("picture"), QStringLiteral("Write the plot to an image and quit."), QStringLiteral("PNG") });
    options.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("Numbers in columns."));
    options.process(application);
    const QString path = options.positionalArguments().value(0);

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        std::fprintf(stderr, "plot1d: %s: %s\n", qPrintable(path), qPrintable(file.errorString()));
        return 1;
    }
    QTextStream text(&file);
    QList<QList<double>> columns = readColumns(text);
    const qsizetype needed = options.isSet(QStringLiteral("x")) ? 2 : 1;
    if (columns.size() < needed) {
        std::fprintf(stderr, "plot1d: %s: no columns of numbers\n", qPrintable(path));
        return 1;
    }

    MultiVectorGraphWidget plot;
    plot.m_doubleBuffered = true;
    plot.init(QStringLiteral("Line"), QStringLiteral("Value"), 0.0, 0.0, true, true);
    plot.m_groupSize = 1; // every column is a separate group,
    plot.setAddType(MultiVectorGraphWidget::AddEachGroup); // with its own colour
    plot.m_groupName = QStringLiteral("Column");
    plot.m_itemName = QStringLiteral("Curve");
    plot.m_firstNumber = static_cast<int>(needed);
    plot.setNotes(QFileInfo(path).fileName());
    plot.setTitle(path);
    plot.setLogScaleY(options.isSet(QStringLiteral("log")));
    QAction visibles(QStringLiteral("Visible Columns..."));
    QObject::connect(&visibles, &QAction::triggered, &plot, &MultiVectorGraphWidget::onSelectVisibles);
    plot.addAction(&visibles);
    if (options.isSet(QStringLiteral("x")))
        useX(plot, columns.takeFirst());
    showColumns(plot, columns);
    plot.resize(800, 400);

    if (options.isSet(QStringLiteral("picture"))) {
        plot.refreshPixmapIfRequired();
        const std::unique_ptr<QPixmap> picture(plot.toPixmap());
        return picture->save(options.value(QStringLiteral("picture"))) ? 0 : 1;
    }
    plot.show();
    return QApplication::exec();
}
