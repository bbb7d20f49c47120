// Text of unknown size, such as a server sends, made fit for display: plain, and no longer than a user can read.
#pragma once

#include <QString>

class QWidget;

namespace tarnis {

/// The beginning of `text`, at most `maxChars` characters and `maxLines` lines, with "…" behind it where something is
/// left out. Takes time for what is kept, not for the whole text.
QString shortText(const QString& text, qsizetype maxChars, int maxLines);

/// Plain text as a tool tip: escaped, so that nothing in it is read as markup, and shortened.
QString toolTipOf(const QString& text);

/// Opens a window with the text, up to a megabyte of it, for reading and copying. It deletes itself on close.
void showFullText(QWidget* parent, const QString& title, const QString& text);

} // namespace tarnis
