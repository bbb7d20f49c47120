/// @file
/// The dialog that exports a plot. GUI thread only.
#pragma once

#include <tarnis/export/plotexporter.h>

#include <QDialog>

#include <functional>
#include <memory>

namespace tarnis {

/// Lets the user choose format, size, resolution and file, shows a preview, and saves. It asks before it replaces a
/// file. A save that fails is reported in the dialog, which stays open. A name without a suffix that is known gets that
/// of the chosen format. The next dialog of the process opens in the folder of the last save (see
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
    /// Chooses the format with this suffix: png, pdf, svg, csv, npy or h5. Nothing for another one.
    void setFormat(const QString& suffix);
    /// `time` returns when the values on show were taken, which is stated in the files. Called at each save; without it
    /// the time is that of the save.
    void setDataTime(const std::function<QDateTime()>& time);

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
    TARNIS_NO_EXPORT bool mayReplace();
    /// @endcond

    PlotExporter m_exporter;
    QString m_histogram;
    QString m_source;
    std::function<QDateTime()> m_dataTime; // may be empty
    QString m_agreedPath; // of a file that may be replaced
    std::unique_ptr<Controls> m_controls;
};

} // namespace tarnis
