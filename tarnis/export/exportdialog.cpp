#include "tarnis/export/exportdialog.h"

#include "tarnis/export/plotpicture_p.h"
#include "tarnis/formats/formats.h"
#include "tarnis/foundation/helpers.h"
#include "tarnis/foundation/message.h"
#include "tarnis/foundation/retranslator.h"
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

QSpinBox* spinBox(int minimum, int maximum, int value)
{
    auto* const box = new QSpinBox;
    box->setRange(minimum, maximum);
    box->setValue(value);
    box->setKeyboardTracking(false);
    return box;
}

} // namespace

struct TARNIS_NO_EXPORT ExportDialog::Controls {
    QComboBox* format = new QComboBox;
    QSpinBox* width = nullptr;
    QSpinBox* height = nullptr;
    QSpinBox* dpi = spinBox(24, 1200, 150);
    QComboBox* extent = new QComboBox;
    QLineEdit* path = new QLineEdit;
    QPushButton* browse = new QPushButton;
    QPushButton* save = nullptr;
    QPushButton* cancel = nullptr;
    QLabel* size = new QLabel;
    QLabel* preview = new QLabel;
    QLabel* problem = new QLabel;
    std::array<QLabel*, 7> names {}; ///< of the rows, in their order
    QString title; ///< another one is the host's
};

ExportDialog::ExportDialog(
    XYGraphWidget& plot, const QString& histogram, const QString& run, const QString& source, QWidget* parent)
    : QDialog(parent)
    , m_exporter(plot)
    , m_histogram(histogram)
    , m_source(source)
    , m_controls(new Controls)
{
    Controls& c = *m_controls;
    c.width = spinBox(100, 10000, pictureSize(plot).width());
    c.height = spinBox(100, 10000, pictureSize(plot).height());
    setObjectName(QStringLiteral("exportDialog"));
    c.path->setObjectName(QStringLiteral("exportPathEdit"));
    c.path->setMinimumWidth(pathChars * fontMetrics().averageCharWidth());
    c.format->setObjectName(QStringLiteral("exportFormatBox"));
    c.problem->setObjectName(QStringLiteral("exportProblemLabel"));
    c.problem->setTextFormat(Qt::PlainText);
    for (const Choice& choice : formats)
        c.format->addItem(QString(), QLatin1String(choice.suffix));
    for (const Extent extent : { Extent::All, Extent::Visible })
        c.extent->addItem(QString(), int(extent));
    c.preview->setFixedSize(previewSize);
    c.preview->setAlignment(Qt::AlignCenter);
    c.problem->setWordWrap(true);
    c.problem->hide();
    layOut();

    const QString name = PlotExporter::suggestedName(histogram.isEmpty() ? QStringLiteral("plot") : histogram, run,
        QDateTime::currentDateTime(), QStringLiteral("png"));
    c.path->setText(QDir(getSaveDir()).filePath(name));
    connect(c.browse, &QPushButton::clicked, this, &ExportDialog::choosePath);
    connect(c.format, &QComboBox::currentIndexChanged, this, &ExportDialog::onFormatChanged);
    for (QSpinBox* const box : { c.width, c.height, c.dpi })
        connect(box, &QSpinBox::valueChanged, this, &ExportDialog::updatePreview);
    setTexts();
    onFormatChanged();
    onLanguageChange(*this, [this] {
        setTexts();
        updatePreview();
    });
}

void ExportDialog::layOut()
{
    Controls& c = *m_controls;
    auto* const file = new QHBoxLayout;
    file->addWidget(c.path);
    file->addWidget(c.browse);
    auto* const middle = new QHBoxLayout;
    middle->addWidget(c.preview, 0, Qt::AlignHCenter);
    auto* const form = new QFormLayout(this);
    form->addRow(middle);
    for (QLabel*& name : c.names)
        name = new QLabel;
    const std::array<QWidget*, 6> fields { c.format, c.width, c.height, c.dpi, c.extent, c.size };
    for (std::size_t row = 0; row < fields.size(); ++row) {
        c.names.at(row)->setBuddy(fields.at(row)); // addRow() does so for texts only, and a label without one shows '&'
        form->addRow(c.names.at(row), fields.at(row));
    }
    c.names.back()->setBuddy(c.path); // a layout has no shortcut of its own
    form->addRow(c.names.back(), file);
    form->addRow(c.problem);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel);
    form->addRow(buttons);
    c.save = buttons->button(QDialogButtonBox::Save);
    c.cancel = buttons->button(QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &ExportDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &ExportDialog::reject);
}

void ExportDialog::setTexts()
{
    Controls& c = *m_controls;
    if (windowTitle() == c.title) {
        c.title = tr("Export");
        setWindowTitle(c.title);
    }
    for (std::size_t i = 0; i < formats.size(); ++i)
        c.format->setItemText(static_cast<int>(i), tr(formats.at(i).text));
    c.extent->setItemText(0, tr("All bins"));
    c.extent->setItemText(1, tr("Visible bins"));
    c.width->setSuffix(tr(" px"));
    c.height->setSuffix(tr(" px"));
    c.dpi->setSuffix(tr(" dpi"));
    c.preview->setAccessibleName(tr("Preview"));
    c.browse->setText(tr("Browse..."));
    const std::array names { tr("&Format:"), tr("&Width:"), tr("&Height:"), tr("&Resolution:"), tr("&Bins:"),
        tr("Size:"), tr("F&ile:") };
    for (std::size_t row = 0; row < names.size(); ++row)
        c.names.at(row)->setText(names.at(row));
    c.path->setToolTip(tr("The file to write"));
    c.browse->setToolTip(tr("Choose the folder and the name of the file"));
    c.save->setToolTip(tr("Write the file and close"));
    c.cancel->setToolTip(tr("Close without writing a file"));
    setToolTips();
}

void ExportDialog::setToolTips()
{
    Controls& c = *m_controls;
    c.format->setToolTip(tr("PNG has pixels; PDF and SVG stay sharp at any size; the others contain the numbers"));
    const QString noPicture = tr("This format contains numbers, not a picture");
    const bool isPicture = c.width->isEnabled();
    c.width->setToolTip(isPicture ? tr("Width of the picture in pixels of a screen with 96 dpi") : noPicture);
    c.height->setToolTip(isPicture ? tr("Height of the picture in pixels of a screen with 96 dpi") : noPicture);
    c.dpi->setToolTip(c.dpi->isEnabled() ? tr("Pixels per inch; 300 suits print")
            : isPicture                  ? tr("This format has no pixels: it is sharp at any resolution")
                                         : noPicture);
    c.extent->setToolTip(isPicture ? tr("A picture shows the visible bins") : tr("Which bins the file contains"));
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
    setToolTips();
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
    Dataset table = m_exporter.datasetFor(path(), Extent(m_controls->extent->currentData().toInt()));
    if (!m_histogram.isEmpty())
        table.title = m_histogram;
    table.source = m_source;
    table.time = options().time;
    return writeDataset(path(), table);
}

void ExportDialog::accept()
{
    // A suffix alone would be a hidden file.
    const bool hasName = !QFileInfo(path()).completeBaseName().isEmpty();
    const QString suffix = QFileInfo(path()).suffix();
    if (hasName && !isKnownSuffix(suffix))
        setPath(path() + u'.' + m_controls->format->currentData().toString());
    if (hasName && !mayReplace())
        return;
    const QString error = hasName ? save() : tr("enter the name of a file");
    m_controls->problem->setVisible(!error.isEmpty());
    if (!error.isEmpty()) {
        setTranslatedText(*m_controls->problem, [error] { return tr("Cannot save the file: %1.").arg(error); });
        return;
    }
    setSaveFilePath(path());
    Q_EMIT saved(path());
    QDialog::accept();
}

} // namespace tarnis
