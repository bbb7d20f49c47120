#include "tarnis/peak/peaksearchdialog.h"

#include "tarnis/foundation/modalbox_p.h"

#include "ui_peaksearchdialog.h"

#include <QCoreApplication>
#include <QEvent>

namespace {

constexpr double fwhmPerSigma = 2.35482;
constexpr unsigned int maxThresholdPercent = 100;
constexpr int minWidthSamples = 3;

QTableWidgetItem* numberItem(double value)
{
    auto* item = new QTableWidgetItem(QString::number(value, 'f', 1));
    item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return item;
}

} // namespace

PeakSearchDialog::PeakSearchDialog(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::PeakSearchDialog>())
{
    ui->setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    ui->lineEditThreshold->setText(QStringLiteral("20"));
    ui->lineEditWidth->setText(QStringLiteral("15"));
    connect(ui->pushButtonSearch, &QPushButton::clicked, this, &PeakSearchDialog::onSearch);
    connect(ui->resultTableWidget, &QTableWidget::currentCellChanged, this, &PeakSearchDialog::currentCellChanged);
    connect(ui->displayPointsCheckBox, &QCheckBox::toggled, this, &PeakSearchDialog::toggledDisplayPoints);
}

PeakSearchDialog::~PeakSearchDialog() = default;

void PeakSearchDialog::appendResults(QList<PeakSearch::Gaussian> const& peaks)
{
    QTableWidget* table = ui->resultTableWidget;
    table->setRowCount(0);
    table->setRowCount(static_cast<int>(peaks.size()));
    for (int row = 0; row < table->rowCount(); ++row) {
        const PeakSearch::Gaussian& peak = peaks.at(row);
        table->setItem(row, 0, numberItem(peak.center));
        table->setItem(row, 1, numberItem(peak.N));
        table->setItem(row, 2, numberItem(fwhmPerSigma * peak.sigma));
    }
}

void PeakSearchDialog::onSearch()
{
    const int threshold = ui->lineEditThreshold->text().toInt();
    if (static_cast<unsigned int>(threshold) > maxThresholdPercent) {
        tarnis::showBox(QMessageBox::Warning, this, QCoreApplication::applicationName(), tr("Invalid threshold."));
        return;
    }
    const int width = ui->lineEditWidth->text().toInt();
    if (width < minWidthSamples) {
        tarnis::showBox(QMessageBox::Warning, this, QCoreApplication::applicationName(), tr("Invalid width."));
        return;
    }
    emit search(threshold, width, true);
}

void PeakSearchDialog::currentCellChanged(int currentRow, int, int, int)
{
    emit selectedChange(currentRow);
}

void PeakSearchDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        ui->retranslateUi(this);
}
