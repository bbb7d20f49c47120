// Lets the user enter the name of a file to save.
#pragma once

#include <QFileDialog>
#include <QStringList>

namespace console {

/// Appends the first suffix of the selected filter to a name without a suffix of any filter, before the dialog asks
/// about overwriting. Selecting another filter changes the suffix of the name.
class SaveDialog : public QFileDialog {
    Q_OBJECT
public:
    /// Filters are of the form "PNG image (*.png)"; `name` is suggested, without a suffix. Opens in getSaveDir().
    SaveDialog(QWidget* parent, const QString& caption, const QStringList& filters, const QString& name);

    void accept() override;

protected:
    void onFilter(const QString& filter);
    void setName(const QString& name);

    QStringList m_suffixes; ///< suffixes of all filters, without the dot
};

/// The suffixes of a filter, without the dot: "Text (*.txt *.dat)" has two.
QStringList suffixesOf(const QString& filter);

} // namespace console
