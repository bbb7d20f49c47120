/// @file
/// The dialog that exports a plot. GUI thread only.
#pragma once

#include <tarnis/export/plotexporter.h>

#include <QDialog>

#include <memory>

namespace tarnis {

/// Lets the user choose format, size, resolution and file, shows a preview, and saves. A save that fails is reported in
/// the dialog, which stays open. The next dialog of the process opens in the folder of the last save (see
/// getSaveDir()).
class TARNIS_EXPORT ExportDialog : public QDialog {
    Q_OBJECT
public:
    /// Exports `plot`, which must outlive the dialog or be an ancestor of it. `histogram` and `run` make up the
    /// suggested name, `source` is stated in the files.
    explicit ExportDialog(XYGraphWidget& plot, const QString& histogram = {}, const QString& run = {},
        const QString& source = {}, QWidget* parent = nullptr);
    ~ExportDialog() override;

    /// The path of the file that accept() writes.
    QString path() const;
    /// Replaces the suggested path; the end of the name chooses the format.
    void setPath(const QString& path);

public Q_SLOTS:
    void accept() override; ///< Saves; closes the dialog if that worked.

Q_SIGNALS:
    void saved(const QString& path); ///< a file was written

private:
    struct Controls;
    /// @cond
    TARNIS_NO_EXPORT PictureOptions options() const;
    TARNIS_NO_EXPORT void choosePath();
    TARNIS_NO_EXPORT void onFormatChanged();
    TARNIS_NO_EXPORT void updatePreview();
    TARNIS_NO_EXPORT QString save() const;
    /// @endcond

    PlotExporter m_exporter;
    QString m_histogram;
    QString m_source;
    QDateTime m_time; ///< when the dialog was opened: what the plot shows then
    std::unique_ptr<Controls> m_controls;
};

} // namespace tarnis
