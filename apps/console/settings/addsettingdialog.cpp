#include "settings/addsettingdialog.h"

#include "app/controlhelp.h"
#include "settings/settingsmodel.h"
#include "ui_addsettingdialog.h"

#include <QPushButton>

namespace console {

AddSettingDialog::AddSettingDialog(SettingsModel& model, QWidget* parent)
    : QDialog(parent)
    , m_model(model)
    , ui(std::make_unique<Ui::AddSettingDialog>())
{
    ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    connect(ui->nameEdit, &QLineEdit::textChanged, this, &AddSettingDialog::onEdited);
    connect(ui->valueEdit, &QLineEdit::textChanged, this, &AddSettingDialog::onEdited);
    connect(ui->buttonBox, &QDialogButtonBox::accepted, this, &AddSettingDialog::onOk);
    connect(&model, &SettingsModel::refused, ui->problemLabel, &QLabel::setText);
    onEdited();
}

AddSettingDialog::~AddSettingDialog() = default;

void AddSettingDialog::onEdited()
{
    const QString name = ui->nameEdit->text().trimmed();
    const QString problem = settingProblem(name, ui->valueEdit->text().trimmed());
    setEnabledWithHelp(ui->buttonBox->button(QDialogButtonBox::Ok), problem.isEmpty(), tr("Add the setting"), problem);
    if (!problem.isEmpty())
        ui->problemLabel->setText(problem);
    else if (m_model.rowOf(name) >= 0)
        ui->problemLabel->setText(tr("A setting with this name exists: it gets the new value."));
    else
        ui->problemLabel->clear();
}

void AddSettingDialog::onOk()
{
    if (m_model.add(ui->nameEdit->text().trimmed(), ui->valueEdit->text().trimmed()))
        accept();
}

} // namespace console
