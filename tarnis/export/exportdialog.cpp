#include "tarnis/export/exportdialog.h"

#include "tarnis/export/plotpicture_p.h"
#include "tarnis/formats/formats.h"
#include "tarnis/foundation/helpers.h"
#include "tarnis/foundation/message.h"
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

#include <algorithm>
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
constexpr int pathChars = 48;

bool isKnownSuffix(const QString& suffix)
{
    return std::any_of(formats.begin(), formats.end(),
        [&](const Choice& choice) { return suffix.compare(QLatin1String(choice.suffix), Qt::CaseInsensitive) == 0; });
}

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

struct TARNIS_NO_EXPORT ExportDialog::Controls {
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
    , m_controls(new Controls { new QComboBox, spinBox(100, 10000, pictureSize(plot).width(), tr(" px")),
          spinBox(100, 10000, pictureSize(plot).height(), tr(" px")), spinBox(24, 1200, 150, tr(" dpi")), new QComboBox,
          new QLineEdit, new QLabel, new QLabel, new QLabel })
{
    Controls& c = *m_controls;
    setObjectName(QStringLiteral("exportDialog"));
    setWindowTitle(tr("Export"));
    c.path->setObjectName(QStringLiteral("exportPathEdit"));
    c.path->setMinimumWidth(pathChars * fontMetrics().averageCharWidth());
    c.format->setObjectName(QStringLiteral("exportFormatBox"));
    c.problem->setObjectName(QStringLiteral("exportProblemLabel"));
    c.problem->setTextFormat(Qt::PlainText);
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
    auto* const middle = new QHBoxLayout;
    middle->addWidget(c.preview, 0, Qt::AlignHCenter);
    form->addRow(middle);
    form->addRow(tr("&Format:"), c.format);
    form->addRow(tr("&Width:"), c.width);
    form->addRow(tr("&Height:"), c.height);
    form->addRow(tr("&Resolution:"), c.dpi);
    form->addRow(tr("&Bins:"), c.extent);
    form->addRow(tr("Size:"), c.size);
    auto* const fileLabel = new QLabel(tr("F&ile:"));
    fileLabel->setBuddy(c.path); // a layout has no shortcut of its own
    form->addRow(fileLabel, file);
    form->addRow(c.problem);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel);
    form->addRow(buttons);

    const QString name = PlotExporter::suggestedName(histogram.isEmpty() ? QStringLiteral("plot") : histogram, run,
        QDateTime::currentDateTime(), QStringLiteral("png"));
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
    setFormat(QFileInfo(path).suffix());
}

void ExportDialog::setFormat(const QString& suffix)
{
    const int format = m_controls->format->findData(suffix.toLower());
    if (format >= 0)
        m_controls->format->setCurrentIndex(format);
}

void ExportDialog::setDataTime(const std::function<QDateTime()>& time)
{
    m_dataTime = time;
}

PictureOptions ExportDialog::options() const
{
    PictureOptions options;
    options.size = QSize(m_controls->width->value(), m_controls->height->value());
    options.dpi = m_controls->dpi->value();
    options.title = m_histogram;
    options.source = m_source;
    options.time = m_dataTime ? m_dataTime() : QDateTime::currentDateTime();
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
    const QString name = path();
    const QString old = QFileInfo(name).suffix();
    if (isKnownSuffix(old) && old.compare(suffix, Qt::CaseInsensitive) != 0)
        c.path->setText(name.chopped(old.size()) + suffix);
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
    const bool isWhole = isKnownSuffix(QFileInfo(path).suffix());
    setPath(isWhole ? path : path + u'.' + suffix);
    if (isWhole)
        m_agreedPath = path; // that dialog has already asked
}

bool ExportDialog::mayReplace()
{
    const QString wanted = path();
    if (wanted == m_agreedPath || !QFileInfo(wanted).isFile())
        return true;
    const QPointer<ExportDialog> alive(this);
    const MessageButton answer = showMessage({ .kind = MessageKind::Question,
        .title = windowTitle(),
        .text = tr("%1 exists already. Replace it?").arg(QFileInfo(wanted).fileName()),
        .buttons = MessageButton::Yes | MessageButton::No,
        .defaultButton = MessageButton::No,
        .window = this });
    return !alive.isNull() && answer == MessageButton::Yes;
}

QString ExportDialog::save() const
{
    if (pictureFormatOfName(path()))
        return m_exporter.savePicture(path(), options());
    Dataset table = m_exporter.dataset(Extent(m_controls->extent->currentData().toInt()));
    if (!m_histogram.isEmpty())
        table.title = m_histogram;
    table.source = m_source;
    table.time = options().time;
    return writeDataset(path(), table);
}

void ExportDialog::accept()
{
    const QString suffix = QFileInfo(path()).suffix();
    setPath(isKnownSuffix(suffix) ? path() : path() + u'.' + m_controls->format->currentData().toString());
    if (!mayReplace())
        return;
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
