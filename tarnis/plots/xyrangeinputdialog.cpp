#include "tarnis/plots/xyrangeinputdialog.h"

#include "tarnis/foundation/retranslator.h"
#include "tarnis/plots/rangebox_p.h"
#include "ui_xyrangeinputdialog.h"

XYRangeInputDialog::XYRangeInputDialog(QWidget* parent, char format, int precision)
    : QDialog(parent, Qt::FramelessWindowHint)
    , ui(std::make_unique<Ui::XYRangeInputDialog>())
    , m_format(format)
    , m_precision(precision)
{
    ui->setupUi(this);
    tarnis::onLanguageChange(*this, [this] { ui->retranslateUi(this); });
    tarnis::paintAsRangeBox(*this);
}

XYRangeInputDialog::~XYRangeInputDialog() = default;

void XYRangeInputDialog::setXMin(double value)
{
    m_xMin = value;
    tarnis::showNumber(*ui->xMinEdit, value, m_format, m_precision);
}

void XYRangeInputDialog::setXMax(double value)
{
    m_xMax = value;
    tarnis::showNumber(*ui->xMaxEdit, value, m_format, m_precision);
}

void XYRangeInputDialog::setYMin(double value)
{
    m_yMin = value;
    tarnis::showNumber(*ui->yMinEdit, value, m_format, m_precision);
}

void XYRangeInputDialog::setYMax(double value)
{
    m_yMax = value;
    tarnis::showNumber(*ui->yMaxEdit, value, m_format, m_precision);
}

void XYRangeInputDialog::on_xMinEdit_returnPressed()
{
    if (const auto value = tarnis::numberIn(*ui->xMinEdit)) {
        setXMin(*value);
        Q_EMIT edited(m_xMin, m_xMax, m_yMin, m_yMax);
    }
}

void XYRangeInputDialog::on_xMaxEdit_returnPressed()
{
    if (const auto value = tarnis::numberIn(*ui->xMaxEdit)) {
        setXMax(*value);
        Q_EMIT edited(m_xMin, m_xMax, m_yMin, m_yMax);
    }
}

void XYRangeInputDialog::on_yMinEdit_returnPressed()
{
    if (const auto value = tarnis::numberIn(*ui->yMinEdit)) {
        setYMin(*value);
        Q_EMIT edited(m_xMin, m_xMax, m_yMin, m_yMax);
    }
}

void XYRangeInputDialog::on_yMaxEdit_returnPressed()
{
    if (const auto value = tarnis::numberIn(*ui->yMaxEdit)) {
        setYMax(*value);
        Q_EMIT edited(m_xMin, m_xMax, m_yMin, m_yMax);
    }
}

void XYRangeInputDialog::on_xMinEdit_editingFinished()
{
    setXMin(m_xMin);
}

void XYRangeInputDialog::on_xMaxEdit_editingFinished()
{
    setXMax(m_xMax);
}

void XYRangeInputDialog::on_yMinEdit_editingFinished()
{
    setYMin(m_yMin);
}

void XYRangeInputDialog::on_yMaxEdit_editingFinished()
{
    setYMax(m_yMax);
}
