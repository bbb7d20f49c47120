// The library's system-level messages with the time of day.
#pragma once

#include <QPlainTextEdit>

namespace tarnis {
struct SystemMessage;
}

namespace console {

/// Shows each message of the library when it arrives, in the current language; limited to 2000 lines.
class MessageList : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit MessageList(QWidget* parent = nullptr);

private:
    void append(const tarnis::SystemMessage& message);
};

} // namespace console
