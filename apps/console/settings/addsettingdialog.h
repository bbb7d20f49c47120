// Lets the user enter the name and value of a new setting.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class AddSettingDialog;
}

namespace console {

class SettingsModel;

/// Stores the setting in the model on OK; for a refused setting the dialog stays open and shows the reason.
class AddSettingDialog : public QDialog {
    Q_OBJECT
public:
    AddSettingDialog(SettingsModel& model, QWidget* parent);
    ~AddSettingDialog() override;

protected:
    void onEdited();
    void onOk();

    SettingsModel& m_model;
    std::unique_ptr<Ui::AddSettingDialog> ui;
};

} // namespace console
