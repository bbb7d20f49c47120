// What the library tells its host at system level, with the time of day.
#pragma once

#include <QPlainTextEdit>

namespace console {

/// Shows every message of _g_sysMsg as it comes; old lines go beyond 2000.
class MessageList : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit MessageList(QWidget* parent = nullptr);

    /// A message of the library in the language of now; any other as it is.
    static QString translated(const QString& message);

protected:
    void onSysMsg(const QString& message);
};

} // namespace console
