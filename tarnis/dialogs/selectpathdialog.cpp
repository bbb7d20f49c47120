#include "tarnis/dialogs/selectpathdialog.h"

#include "tarnis/dialogs/folderlists_p.h"
#include "tarnis/dialogs/folderrequests_p.h"
#include "tarnis/dialogs/serverpaths_p.h"
#include "tarnis/foundation/modalbox_p.h"
#include "tarnis/server/sessionend.h"
#include "tarnis/server/tarnissession.h"

#include "ui_selectpathdialog.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>

#include <utility>

SelectPathDialog::SelectPathDialog(QString const& dir, TarnisSession* session_, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::SelectPathDialog>())
{
    ui->setupUi(this);
    ui->fileNameLineEdit->hide();
    lists = new tarnis::FolderLists(
        ui->dirComboBox, ui->curDirListWidget, [this](QListWidgetItem* item) { onCurDirListItemDoubleClicked(item); },
        this);
    connect(ui->dirComboBox, &QComboBox::currentIndexChanged, this,
        [this](int index) { onDirComboIndexChanged(ui->dirComboBox->itemText(index)); });
    connect(
        ui->curDirListWidget, &QListWidget::itemDoubleClicked, this, &SelectPathDialog::onCurDirListItemDoubleClicked);
    connect(ui->buttonBox, &QDialogButtonBox::accepted, this, &SelectPathDialog::onAccepted);

    requests =
        new tarnis::FolderRequests(session, lists, { QLatin1String("pathSelectPwd"), QLatin1String("pathSelectLs") },
            { [this] { return getDir(); }, [this](const QString& folder) { goTo(folder); },
                [this](QStringList& names) { showListing(names); } },
            this);
    requests->start(*session_);

    if (dir.isEmpty())
        requestPwd();
    else
        setDir(dir);
}

SelectPathDialog::~SelectPathDialog()
{
    tarnis::endInBackground(session);
}

void SelectPathDialog::setExt(QList<QString> const& exts_, bool mustExist_, bool confirmOverwrite_)
{
    exts = exts_;
    if (exts.contains(QLatin1String("*")))
        exts = { QStringLiteral("*") };
    // This turns "*" into ".*", which matches only names that end in these two characters. Hosts rely on it.
    for (QString& ext : exts) {
        if (!ext.startsWith(QLatin1Char('.')))
            ext.prepend(QLatin1Char('.'));
    }
    mustExist = mustExist_;
    confirmOverwrite = confirmOverwrite_;
    ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(false);
    ui->fileNameLineEdit->show();
    connect(ui->fileNameLineEdit, &QLineEdit::textChanged, this, &SelectPathDialog::onFileNameChanged,
        Qt::UniqueConnection);
    connect(ui->curDirListWidget, &QListWidget::currentTextChanged, this, &SelectPathDialog::onCurDirListChanged,
        Qt::UniqueConnection);
}

bool SelectPathDialog::matchExt(QString const& name)
{
    if (name.endsWith(QLatin1Char('/')))
        return false;
    const QString lowered = name.toLower();
    for (const QString& ext : std::as_const(exts)) {
        if (ext == QLatin1String("*") || lowered.endsWith(ext.toLower()))
            return true;
    }
    return false;
}

void SelectPathDialog::setDir(QString const& dir)
{
    requests->begin();
    goTo(dir);
}

void SelectPathDialog::goTo(QString const& dir)
{
    if (dir == getDir())
        return;
    {
        const QSignalBlocker blocker(ui->dirComboBox);
        ui->dirComboBox->clear();
        ui->dirComboBox->addItems(tarnis::ancestors(dir));
        ui->dirComboBox->setCurrentIndex(ui->dirComboBox->count() - 1);
    }
    requests->continueListing();
}

QString SelectPathDialog::getDir() const
{
    return ui->dirComboBox->currentText();
}

QList<QString> SelectPathDialog::getNames() const
{
    QList<QString> names;
    for (int row = 0; row < ui->curDirListWidget->count(); ++row)
        names.append(ui->curDirListWidget->item(row)->text());
    return names;
}

void SelectPathDialog::trimDir(QString& path)
{
    path = tarnis::withoutTrailingSlashes(path);
}

void SelectPathDialog::requestPwd()
{
    requests->requestDirectory();
}

void SelectPathDialog::requestLs()
{
    requests->requestListing();
}

void SelectPathDialog::result(PTarnisCmd cmd, QByteArray const& payload)
{
    requests->read(*cmd, payload);
}

void SelectPathDialog::showListing(QStringList& names)
{
    names.removeIf([this](const QString& name) { return !name.endsWith(QLatin1Char('/')) && !matchExt(name); });
    ui->curDirListWidget->clear();
    ui->curDirListWidget->addItems(names);
}

void SelectPathDialog::onDirComboIndexChanged(QString const&)
{
    requestLs();
}

void SelectPathDialog::onCurDirListItemDoubleClicked(QListWidgetItem* item)
{
    const QString name = item->text();
    if (matchExt(name)) {
        onAccepted();
    } else if (name.endsWith(QLatin1Char('/'))) {
        setDir(tarnis::joinedPath(getDir(), name));
    }
}

void SelectPathDialog::onFileNameChanged(QString const& text)
{
    ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(!text.isEmpty());
}

void SelectPathDialog::onCurDirListChanged(QString const& text)
{
    if (exts.isEmpty())
        return;
    const bool matches = matchExt(text);
    if (matches)
        ui->fileNameLineEdit->setText(text);
    ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(matches);
}

void SelectPathDialog::onAccepted()
{
    if (exts.isEmpty()) {
        finish(getDir());
        return;
    }
    QString name = ui->fileNameLineEdit->text();
    if (name.isEmpty() || name.contains(QLatin1Char('/')))
        return;
    if (!matchExt(name))
        name += exts.first();
    const QPointer<SelectPathDialog> guard(this);
    if (mayTakeName(name) && guard)
        finish(tarnis::joinedPath(getDir(), name));
}

bool SelectPathDialog::mayTakeName(QString const& name)
{
    const bool exists = getNames().contains(name);
    if (mustExist && !exists) {
        tarnis::showBox(
            QMessageBox::Information, this, QCoreApplication::applicationName(), tr("File not found: %1").arg(name));
        return false;
    }
    if (!confirmOverwrite || !exists)
        return true;
    return tarnis::showBox(QMessageBox::Question, this, QCoreApplication::applicationName(),
               tr("'%1' already exists. Do you want to overwrite it?").arg(name), QMessageBox::Ok | QMessageBox::Cancel)
        == QMessageBox::Ok;
}

void SelectPathDialog::finish(QString const& path)
{
    const QPointer<SelectPathDialog> guard(this);
    Q_EMIT accepted(path);
    if (guard)
        accept();
}

void SelectPathDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        ui->retranslateUi(this);
}

void SelectPathDialog::closeEvent(QCloseEvent* event)
{
    hide();
    tarnis::endInBackground(std::exchange(session, nullptr));
    QDialog::closeEvent(event);
}
