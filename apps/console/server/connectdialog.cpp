#include "server/connectdialog.h"

#include "app/controlhelp.h"
#include "server/servercontroller.h"
#include "ui_connectdialog.h"

#include <QFileDialog>
#include <QPushButton>

namespace console {

ConnectDialog::ConnectDialog(const ServerChoice& choice, const QByteArray& prompt, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::ConnectDialog>())
{
    ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    ui->programEdit->setText(choice.program);
    ui->hostEdit->setText(choice.host);
    ui->portSpin->setValue(choice.port == 0 ? 5000 : choice.port);
    ui->promptEdit->setText(promptToText(prompt));
    if (choice.kind == ServerChoice::Kind::Remote)
        ui->remoteRadio->setChecked(true);
    else if (choice.program.isEmpty())
        ui->simulatorRadio->setChecked(true);
    else
        ui->localRadio->setChecked(true);

    for (QRadioButton* radio : { ui->simulatorRadio, ui->localRadio, ui->remoteRadio })
        connect(radio, &QRadioButton::toggled, this, &ConnectDialog::onEdited);
    for (QLineEdit* edit : { ui->programEdit, ui->hostEdit, ui->promptEdit })
        connect(edit, &QLineEdit::textChanged, this, &ConnectDialog::onEdited);
    // Typing an address or a program selects that kind of server.
    connect(ui->programEdit, &QLineEdit::textEdited, this, [this] { ui->localRadio->setChecked(true); });
    connect(ui->hostEdit, &QLineEdit::textEdited, this, [this] { ui->remoteRadio->setChecked(true); });
    connect(ui->browseButton, &QPushButton::clicked, this, &ConnectDialog::browse);
    onEdited();
}

ConnectDialog::~ConnectDialog() = default;

ServerChoice ConnectDialog::choice() const
{
    ServerChoice choice;
    choice.kind = ui->remoteRadio->isChecked() ? ServerChoice::Kind::Remote : ServerChoice::Kind::Local;
    if (ui->localRadio->isChecked())
        choice.program = ui->programEdit->text().trimmed();
    if (ui->remoteRadio->isChecked()) {
        choice.host = ui->hostEdit->text().trimmed();
        choice.port = quint16(ui->portSpin->value());
    }
    return choice;
}

QByteArray ConnectDialog::prompt() const
{
    return promptFromText(ui->promptEdit->text()).value_or(QByteArray());
}

void ConnectDialog::browse()
{
    auto* dialog = new QFileDialog(this, tr("Program of the Server"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) {
        ui->programEdit->setText(path);
        ui->localRadio->setChecked(true);
    });
    dialog->open();
}

QString ConnectDialog::problem() const
{
    if (ui->promptEdit->text().isEmpty())
        return tr("Type the server's prompt.");
    if (prompt().isEmpty())
        return tr("The prompt contains an escape other than \\n \\r \\t \\e \\\\ \\xHH.");
    const ServerChoice chosen = choice();
    if (ui->localRadio->isChecked() && chosen.program.isEmpty())
        return tr("Type or browse for the program to start.");
    if (chosen.kind == ServerChoice::Kind::Local && resolveProgram(chosen.program).isEmpty())
        return chosen.program.isEmpty() ? tr("The simulated server is not installed beside the console.")
                                        : tr("There is no program of this name.");
    if (chosen.kind == ServerChoice::Kind::Remote && (chosen.host.isEmpty() || chosen.host.contains(u' ')))
        return tr("Type the host's name or address.");
    return {};
}

void ConnectDialog::onEdited()
{
    QPushButton* ok = ui->buttonBox->button(QDialogButtonBox::Ok);
    ok->setText(ui->remoteRadio->isChecked() ? tr("Connect") : tr("Start"));
    const QString what = problem();
    ui->problemLabel->setText(what);
    setEnabledWithHelp(ok, what.isEmpty(), tr("Use this server"), what);
}

} // namespace console
