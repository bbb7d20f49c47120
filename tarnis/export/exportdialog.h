/// @file
/// The dialog that exports a plot. GUI thread only.
#pragma once

#include <tarnis/export/plotexporter.h>

#include <QDialog>

#include <functional>
#include <memory>

namespace tarnis {

/// Lets the user choose format, size, resolution and file, shows a preview, and saves. It asks before it replaces a
/// file. A failed save is reported in the dialog, which stays open. The suffix of the chosen format is appended to a
/// name without a known suffix. The next dialog of the process opens in the folder of the last save (see getSaveDir()).
class TARNIS_EXPORT ExportDialog : public QDialog {
    Q_OBJECT
public:
    /// Exports `plot`, which must outlive the dialog or be an ancestor of it. `histogram` and `run` form the suggested
    /// file name, `source` is written into the files.
    explicit ExportDialog(XYGraphWidget& plot, const QString& histogram = {}, const QString& run = {},
        const QString& source = {}, QWidget* parent = nullptr);
    ~ExportDialog() override;

    /// The path of the file that accept() writes.
    QString path() const;
    /// Replaces the suggested path; the suffix selects the format.
    void setPath(const QString& path);
    /// Selects the format by its suffix: png, pdf, svg, csv, npy or h5. Other suffixes are ignored.
    void setFormat(const QString& suffix);
    /// `time` returns when the displayed values were taken, which is written into the files. Called at each save. By
    /// default the time of the save is used.
    void setDataTime(const std::function<QDateTime()>& time);

public Q_SLOTS:
    void accept() override; ///< Saves, and closes the dialog on success.

Q_SIGNALS:
    void saved(const QString& path); ///< a file was written

private:
    struct Controls;
    /// @cond
    TARNIS_NO_EXPORT void layOut();
    TARNIS_NO_EXPORT void setTexts();
    TARNIS_NO_EXPORT void setToolTips(); ///< of the fields that depend on the format
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
    QString m_agreedPath; // an existing file that the user agreed to replace
    std::unique_ptr<Controls> m_controls;
};

} // namespace tarnis
