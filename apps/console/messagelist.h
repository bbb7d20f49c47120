// What the library tells its host at system level, with the time of day.
#pragma once

#include <QPlainTextEdit>

namespace console {

/// Shows every message of _g_sysMsg as it comes; old lines go beyond 2000.
class MessageList : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit MessageList(QWidget* parent = nullptr);

protected:
    void onSysMsg(const QString& message);
};

} // namespace console
