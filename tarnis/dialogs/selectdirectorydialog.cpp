#include "tarnis/dialogs/selectdirectorydialog.h"

#include "tarnis/dialogs/folderlists_p.h"
#include "tarnis/dialogs/folderrequests_p.h"
#include "tarnis/dialogs/serverpaths_p.h"
#include "tarnis/foundation/modalbox_p.h"
#include "tarnis/server/sessionend.h"
#include "tarnis/server/tarnissession.h"

#include "ui_selectdirectorydialog.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QPointer>
#include <QPushButton>

SelectDirectoryDialog::SelectDirectoryDialog(QString const& dir_, TarnisSession* session_, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::SelectDirectoryDialog>())
    , dir(dir_)
{
    ui->setupUi(this);
    ui->fileNameLineEdit->hide();
    lists = new tarnis::FolderLists(
        ui->dirComboBox, ui->curDirListWidget, [this](QListWidgetItem* item) { onCurDirListItemDoubleClicked(item); },
        this);
    connect(ui->dirComboBox, &QComboBox::currentIndexChanged, this,
        [this](int index) { onDirComboIndexChanged(ui->dirComboBox->itemText(index)); });
    connect(ui->curDirListWidget, &QListWidget::itemDoubleClicked, this,
        &SelectDirectoryDialog::onCurDirListItemDoubleClicked);
    connect(ui->buttonBox, &QDialogButtonBox::accepted, this, &SelectDirectoryDialog::onAccepted);

    requests = new tarnis::FolderRequests(session, lists, { QLatin1String("pwd"), QLatin1String("ls") },
        { [this] { return dir; },
            [this](const QString& folder) {
                dir = folder;
                requests->continueListing();
            },
            [this](QStringList& names) { showListing(names); } },
        this);
    requests->start(*session_);

    trimDir(dir);
    if (dir.isEmpty())
        requestPwd();
    else
        requestLs();
}

SelectDirectoryDialog::~SelectDirectoryDialog()
{
    tarnis::endInBackground(session);
}

void SelectDirectoryDialog::setExt(QList<QString> const& exts_, bool nameEdit_, QString const& suffix_)
{
    exts = exts_;
    nameEdit = nameEdit_;
    suffix = suffix_;
    ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(false);
    if (nameEdit) {
        ui->fileNameLineEdit->show();
        connect(ui->fileNameLineEdit, &QLineEdit::textChanged, this, &SelectDirectoryDialog::onFileNameChanged,
            Qt::UniqueConnection);
    } else {
        connect(ui->curDirListWidget, &QListWidget::itemSelectionChanged, this,
            &SelectDirectoryDialog::onCurDirListItemSelectioChanged, Qt::UniqueConnection);
    }
}

bool SelectDirectoryDialog::matchExt(QString const& name)
{
    for (const QString& ext : std::as_const(exts)) {
        if (name.endsWith(ext))
            return true;
        if (ext == QLatin1String("*") && !name.endsWith(QLatin1Char('/')))
            return true;
    }
    return false;
}

void SelectDirectoryDialog::trimDir(QString& path)
{
    path = tarnis::withoutTrailingSlashes(path);
}

void SelectDirectoryDialog::requestPwd()
{
    requests->requestDirectory();
}

void SelectDirectoryDialog::requestLs()
{
    requests->requestListing();
}

void SelectDirectoryDialog::result(PTarnisCmd cmd, QByteArray const& payload)
{
    requests->read(*cmd, payload);
}

void SelectDirectoryDialog::showListing(QStringList& names)
{
    allNames = names;
    names.removeIf([this](const QString& name) {
        return name.isEmpty() || (!name.endsWith(QLatin1Char('/')) && !matchExt(name));
    });
    rebuildDirCombo();
    ui->curDirListWidget->clear();
    ui->curDirListWidget->addItems(names);
}

void SelectDirectoryDialog::rebuildDirCombo()
{
    comboActive = false;
    ui->dirComboBox->clear();
    ui->dirComboBox->addItems(tarnis::ancestors(dir));
    ui->dirComboBox->setCurrentIndex(ui->dirComboBox->count() - 1);
    comboActive = true;
}

void SelectDirectoryDialog::onDirComboIndexChanged(QString const& text)
{
    if (!comboActive)
        return;
    dir = text;
    requestLs();
}

void SelectDirectoryDialog::onCurDirListItemDoubleClicked(QListWidgetItem* item)
{
    const QString name = item->text();
    if (matchExt(name)) {
        onAccepted();
        return;
    }
    dir = tarnis::joinedPath(dir, name);
    trimDir(dir);
    requestLs();
}

void SelectDirectoryDialog::onFileNameChanged(QString const& text)
{
    ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(!text.isEmpty());
}

QListWidgetItem* SelectDirectoryDialog::selectedItem() const
{
    const QList<QListWidgetItem*> selected = ui->curDirListWidget->selectedItems();
    return selected.isEmpty() ? nullptr : selected.first();
}

void SelectDirectoryDialog::onCurDirListItemSelectioChanged()
{
    const QListWidgetItem* const item = selectedItem();
    const bool matches = item && matchExt(item->text());
    if (matches)
        ui->fileNameLineEdit->setText(item->text());
    ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(matches);
}

void SelectDirectoryDialog::onAccepted()
{
    const QPointer<SelectDirectoryDialog> guard(this);
    // The "/" is always added: at the root, which "pwd" reports as "/", the result begins with two of them.
    if (nameEdit) {
        QString name = ui->fileNameLineEdit->text();
        if (name.isEmpty())
            return;
        if (!exts.isEmpty() && !name.endsWith(exts.first()))
            name += exts.first();
        if (!mayTakeName(name) || !guard)
            return;
        Q_EMIT accepted(dir + QLatin1Char('/') + name);
    } else if (!exts.isEmpty()) {
        const QListWidgetItem* const item = selectedItem();
        if (!item)
            return;
        Q_EMIT accepted(dir + QLatin1Char('/') + item->text());
    } else {
        Q_EMIT accepted(dir);
    }
    if (guard)
        accept();
}

bool SelectDirectoryDialog::mayTakeName(QString const& name)
{
    if (!allNames.contains(name + suffix))
        return true;
    return tarnis::showBox(QMessageBox::Question, this, QCoreApplication::applicationName(),
               tr("'%1' already exists. Do you want to overwrite it?").arg(name), QMessageBox::Ok | QMessageBox::Cancel,
               QMessageBox::Cancel)
        == QMessageBox::Ok;
}

void SelectDirectoryDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        ui->retranslateUi(this);
}

void SelectDirectoryDialog::closeEvent(QCloseEvent* event)
{
    hide();
    tarnis::endInBackground(std::exchange(session, nullptr));
    QDialog::closeEvent(event);
}
