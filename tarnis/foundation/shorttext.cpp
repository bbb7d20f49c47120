#include "tarnis/foundation/shorttext_p.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace tarnis {

namespace {

constexpr QChar ellipsis(0x2026);
constexpr qsizetype toolTipChars = 2000;
constexpr int toolTipLines = 30;
constexpr qsizetype windowChars = 1 << 20;
constexpr qsizetype lineChars = 1000;
constexpr QSize windowSize(640, 400);

// A text edit needs seconds to lay out a single line of a megabyte.
QString withBoundedLines(const QString& text)
{
    QString lines;
    lines.reserve(text.size() + text.size() / lineChars + 1);
    qsizetype length = 0;
    for (const QChar character : text) {
        length = character == u'\n' ? 0 : length + 1;
        lines.append(character);
        if (length == lineChars) {
            lines.append(u'\n');
            length = 0;
        }
    }
    return lines;
}

} // namespace

QString shortText(const QString& text, qsizetype maxChars, int maxLines)
{
    qsizetype end = qMin(text.size(), maxChars);
    int line = 1;
    for (qsizetype i = 0; i < end; ++i) {
        if (text.at(i) == u'\n' && ++line > maxLines)
            end = i;
    }
    if (end == text.size())
        return text;
    if (end > 0 && text.at(end - 1).isHighSurrogate())
        --end;
    return text.left(end) + ellipsis;
}

QString toolTipOf(const QString& text)
{
    return QStringLiteral("<p style=\"white-space:pre-wrap\">%1</p>")
        .arg(shortText(text, toolTipChars, toolTipLines).toHtmlEscaped());
}

void showFullText(QWidget* parent, const QString& title, const QString& text)
{
    auto* const window = new QDialog(parent);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setObjectName(QStringLiteral("fullText"));
    window->setWindowTitle(title);
    auto* const edit = new QPlainTextEdit;
    edit->setReadOnly(true);
    edit->setAccessibleName(title);
    edit->setPlainText(withBoundedLines(shortText(text, windowChars, windowChars)));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QObject::connect(buttons, &QDialogButtonBox::rejected, window, &QDialog::close);
    auto* const layout = new QVBoxLayout(window);
    layout->addWidget(edit);
    layout->addWidget(buttons);
    window->resize(windowSize);
    window->show();
}

} // namespace tarnis
