#include "tarnis/plots/xrangeinputdialog.h"

#include "tarnis/foundation/retranslator.h"
#include "tarnis/plots/rangebox_p.h"
#include "ui_xrangeinputdialog.h"

XRangeInputDialog::XRangeInputDialog(const QString& name, char format, int precision, QWidget* parent)
    : QDialog(parent, Qt::FramelessWindowHint)
    , ui(std::make_unique<Ui::XRangeInputDialog>())
    , m_format(format)
    , m_precision(precision)
{
    ui->setupUi(this);
    const auto setLabels = [this, name] {
        ui->xMinLabel->setText(tr("%1-min").arg(name));
        ui->xMaxLabel->setText(tr("%1-max").arg(name));
    };
    setLabels();
    tarnis::onLanguageChange(*this, setLabels);
    tarnis::paintAsRangeBox(*this);
}

XRangeInputDialog::~XRangeInputDialog() = default;

void XRangeInputDialog::setXMin(double value)
{
    m_xMin = value;
    tarnis::showNumber(*ui->xMinEdit, value, m_format, m_precision);
}

void XRangeInputDialog::setXMax(double value)
{
    m_xMax = value;
    tarnis::showNumber(*ui->xMaxEdit, value, m_format, m_precision);
}

void XRangeInputDialog::on_xMinEdit_returnPressed()
{
    if (const auto value = tarnis::numberIn(*ui->xMinEdit)) {
        setXMin(*value);
        Q_EMIT edited(m_xMin, m_xMax);
    }
}

void XRangeInputDialog::on_xMaxEdit_returnPressed()
{
    if (const auto value = tarnis::numberIn(*ui->xMaxEdit)) {
        setXMax(*value);
        Q_EMIT edited(m_xMin, m_xMax);
    }
}

void XRangeInputDialog::on_xMinEdit_editingFinished()
{
    setXMin(m_xMin);
}

void XRangeInputDialog::on_xMaxEdit_editingFinished()
{
    setXMax(m_xMax);
}
