// What the library tells its host at system level, with the time of day.
#pragma once

#include <QPlainTextEdit>

namespace tarnis {
struct SystemMessage;
}

namespace console {

/// Shows every message of the library as it comes, in the language of that moment; old lines go beyond 2000.
class MessageList : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit MessageList(QWidget* parent = nullptr);

private:
    void append(const tarnis::SystemMessage& message);
};

} // namespace console
