#include "saves/savedialog.h"

#include <tarnis/foundation/helpers.h>

#include <QFileInfo>
#include <QLineEdit>
#include <QRegularExpression>

namespace console {

QStringList suffixesOf(const QString& filter)
{
    static const QRegularExpression pattern(QStringLiteral("\\*\\.(\\w+)"));
    QStringList suffixes;
    for (const QRegularExpressionMatch& match : pattern.globalMatch(filter))
        suffixes.append(match.captured(1));
    return suffixes;
}

SaveDialog::SaveDialog(QWidget* parent, const QString& caption, const QStringList& filters, const QString& name)
    : QFileDialog(parent, caption, getSaveDir())
    , m_suffixes(suffixesOf(filters.join(u' ')))
{
    setAcceptMode(QFileDialog::AcceptSave);
    setFileMode(QFileDialog::AnyFile);
    setNameFilters(filters);
    connect(this, &QFileDialog::filterSelected, this, &SaveDialog::onFilter);
    onFilter(filters.constFirst());
    setName(name + u'.' + defaultSuffix());
}

void SaveDialog::onFilter(const QString& filter)
{
    setDefaultSuffix(suffixesOf(filter).value(0)); // the only suffix setting of a native dialog
    const auto* const edit = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    const QString name = edit ? edit->text() : QString();
    const QString suffix = QFileInfo(name).suffix();
    if (m_suffixes.contains(suffix, Qt::CaseInsensitive) && !suffixesOf(filter).contains(suffix, Qt::CaseInsensitive))
        setName(name.chopped(suffix.size()) + defaultSuffix());
}

void SaveDialog::setName(const QString& name)
{
    // selectFile() changes a name in a folder that does not exist.
    if (auto* const edit = findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
        edit->setText(name);
    else
        selectFile(name);
}

void SaveDialog::accept()
{
    const auto* const edit = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    const QString name = edit ? edit->text() : QString();
    const bool isFile = !name.isEmpty() && !QFileInfo(selectedFiles().value(0)).isDir();
    // A dot in a name such as "run.12" makes Qt believe that it has a suffix.
    if (isFile && !m_suffixes.contains(QFileInfo(name).suffix(), Qt::CaseInsensitive))
        setName(name + u'.' + defaultSuffix());
    QFileDialog::accept();
}

} // namespace console
