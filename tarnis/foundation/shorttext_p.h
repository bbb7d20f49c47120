// Prepares text of unknown size, for example from a server, for display: plain and limited in length.
#pragma once

#include <QString>

class QWidget;

namespace tarnis {

/// The beginning of `text`, at most `maxChars` characters and `maxLines` lines, followed by "…" if the text was
/// shortened. Takes time proportional to the result, not to the text.
QString shortText(const QString& text, qsizetype maxChars, int maxLines);

/// Plain text as a tool tip: escaped, so that nothing in it is read as markup, and shortened.
QString toolTipOf(const QString& text);

/// Opens a window with the text, up to a megabyte of it, for reading and copying. It deletes itself on close.
void showFullText(QWidget* parent, const QString& title, const QString& text);

} // namespace tarnis
