#include "tarnis/export/exportdialog.h"

#include "tarnis/formats/formats.h"
#include "tarnis/foundation/helpers.h"
#include "tarnis/plots/xygraphwidget.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>

#include <array>
#include <cmath>

namespace tarnis {

namespace {

struct Choice {
    const char* suffix;
    const char* text;
};

constexpr std::array<Choice, 6> formats { {
    { "png", QT_TRANSLATE_NOOP("tarnis::ExportDialog", "PNG picture") },
    { "pdf", QT_TRANSLATE_NOOP("tarnis::ExportDialog", "PDF page") },
    { "svg", QT_TRANSLATE_NOOP("tarnis::ExportDialog", "SVG drawing") },
    { "csv", QT_TRANSLATE_NOOP("tarnis::ExportDialog", "CSV table") },
    { "npy", QT_TRANSLATE_NOOP("tarnis::ExportDialog", "NPY array") },
    { "h5", QT_TRANSLATE_NOOP("tarnis::ExportDialog", "HDF5 (NeXus) file") },
} };

constexpr QSize previewSize(320, 220);

QSpinBox* spinBox(int least, int most, int value, const QString& unit)
{
    auto* const box = new QSpinBox;
    box->setRange(least, most);
    box->setValue(value);
    box->setSuffix(unit);
    box->setKeyboardTracking(false);
    return box;
}

} // namespace

struct ExportDialog::Controls {
    QComboBox* format;
    QSpinBox* width;
    QSpinBox* height;
    QSpinBox* dpi;
    QComboBox* extent;
    QLineEdit* path;
    QLabel* size;
    QLabel* preview;
    QLabel* problem;
};

ExportDialog::ExportDialog(
    XYGraphWidget& plot, const QString& histogram, const QString& run, const QString& source, QWidget* parent)
    : QDialog(parent)
    , m_exporter(plot)
    , m_histogram(histogram)
    , m_source(source)
    , m_time(QDateTime::currentDateTime())
    , m_controls(new Controls { new QComboBox, spinBox(100, 10000, plot.width(), tr(" px")),
          spinBox(100, 10000, plot.height(), tr(" px")), spinBox(24, 1200, 150, tr(" dpi")), new QComboBox,
          new QLineEdit, new QLabel, new QLabel, new QLabel })
{
    Controls& c = *m_controls;
    setWindowTitle(tr("Export"));
    for (const Choice& choice : formats)
        c.format->addItem(tr(choice.text), QLatin1String(choice.suffix));
    c.extent->addItem(tr("All bins"), int(Extent::All));
    c.extent->addItem(tr("Visible bins"), int(Extent::Visible));
    c.preview->setFixedSize(previewSize);
    c.preview->setAlignment(Qt::AlignCenter);
    c.preview->setAccessibleName(tr("Preview"));
    c.problem->setWordWrap(true);
    c.problem->hide();

    auto* const browse = new QPushButton(tr("Browse..."));
    auto* const file = new QHBoxLayout;
    file->addWidget(c.path);
    file->addWidget(browse);
    auto* const form = new QFormLayout(this);
    form->addRow(c.preview);
    form->addRow(tr("&Format:"), c.format);
    form->addRow(tr("&Width:"), c.width);
    form->addRow(tr("&Height:"), c.height);
    form->addRow(tr("&Resolution:"), c.dpi);
    form->addRow(tr("&Bins:"), c.extent);
    form->addRow(tr("Size:"), c.size);
    form->addRow(tr("F&ile:"), file);
    form->addRow(c.problem);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel);
    form->addRow(buttons);

    const QString name = PlotExporter::suggestedName(
        histogram.isEmpty() ? QStringLiteral("plot") : histogram, run, m_time, QStringLiteral("png"));
    c.path->setText(QDir(getSaveDir()).filePath(name));
    connect(buttons, &QDialogButtonBox::accepted, this, &ExportDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &ExportDialog::reject);
    connect(browse, &QPushButton::clicked, this, &ExportDialog::choosePath);
    connect(c.format, &QComboBox::currentIndexChanged, this, &ExportDialog::onFormatChanged);
    for (QSpinBox* const box : { c.width, c.height, c.dpi })
        connect(box, &QSpinBox::valueChanged, this, &ExportDialog::updatePreview);
    onFormatChanged();
}

ExportDialog::~ExportDialog() = default;

QString ExportDialog::path() const
{
    return m_controls->path->text();
}

void ExportDialog::setPath(const QString& path)
{
    m_controls->path->setText(path);
    const int format = m_controls->format->findData(QFileInfo(path).suffix().toLower());
    if (format >= 0)
        m_controls->format->setCurrentIndex(format);
}

PictureOptions ExportDialog::options() const
{
    PictureOptions options;
    options.size = QSize(m_controls->width->value(), m_controls->height->value());
    options.dpi = m_controls->dpi->value();
    options.title = m_histogram;
    options.source = m_source;
    options.time = m_time;
    return options;
}

void ExportDialog::onFormatChanged()
{
    Controls& c = *m_controls;
    const QString suffix = c.format->currentData().toString();
    const bool picture = pictureFormatOfName(u'.' + suffix).has_value();
    c.width->setEnabled(picture);
    c.height->setEnabled(picture);
    c.dpi->setEnabled(suffix == u"png");
    c.extent->setEnabled(!picture);
    const QFileInfo file(c.path->text());
    if (file.suffix().toLower() != suffix)
        c.path->setText(QDir(file.path()).filePath(file.completeBaseName() + u'.' + suffix));
    updatePreview();
}

void ExportDialog::updatePreview()
{
    Controls& c = *m_controls;
    const PictureOptions chosen = options();
    const double scale = chosen.dpi / 96.0;
    constexpr double millimetresPerPixel = 25.4 / 96.0;
    const QString paper = tr("%1 x %2 mm")
                              .arg(std::lround(chosen.size.width() * millimetresPerPixel))
                              .arg(std::lround(chosen.size.height() * millimetresPerPixel));
    if (!c.width->isEnabled())
        c.size->setText(tr("numbers, not a picture"));
    else if (c.dpi->isEnabled())
        c.size->setText(tr("%1 x %2 pixels, %3")
                            .arg(std::lround(chosen.size.width() * scale))
                            .arg(std::lround(chosen.size.height() * scale))
                            .arg(paper));
    else
        c.size->setText(paper);
    PictureOptions small = chosen;
    small.dpi = 96.0;
    const QImage image = m_exporter.image(small);
    c.preview->setPixmap(QPixmap::fromImage(image.scaled(previewSize, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

void ExportDialog::choosePath()
{
    const QString suffix = m_controls->format->currentData().toString();
    const QPointer<ExportDialog> alive(this);
    const QString path =
        QFileDialog::getSaveFileName(this, tr("Export"), this->path(), QStringLiteral("*.%1").arg(suffix));
    if (alive.isNull() || path.isEmpty())
        return;
    setPath(QFileInfo(path).suffix().isEmpty() ? path + u'.' + suffix : path);
}

QString ExportDialog::save() const
{
    if (pictureFormatOfName(path()))
        return m_exporter.savePicture(path(), options());
    Dataset table = m_exporter.dataset(Extent(m_controls->extent->currentData().toInt()));
    if (!m_histogram.isEmpty())
        table.title = m_histogram;
    table.source = m_source;
    table.time = m_time;
    return writeDataset(path(), table);
}

void ExportDialog::accept()
{
    const QString error = save();
    m_controls->problem->setVisible(!error.isEmpty());
    if (!error.isEmpty()) {
        m_controls->problem->setText(tr("Cannot save the file: %1.").arg(error));
        return;
    }
    setSaveFilePath(path());
    Q_EMIT saved(path());
    QDialog::accept();
}

} // namespace tarnis
