/// @file
/// The library's system-level messages as pattern and arguments, for hosts that show them in the user's language.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QMetaType>
#include <QObject>
#include <QStringList>

namespace tarnis {

/// A message that the library posts to _g_sysMsg.
struct TARNIS_EXPORT SystemMessage {
    const char* pattern = ""; ///< English, with %1 and %2 for the arguments; a literal of the library
    QStringList arguments; ///< at most two: names, numbers and operating system texts

    /// In English, as posted to _g_sysMsg.
    QString text() const;
    /// In the language of the installed translators.
    QString translated() const;
};

/// Emits the messages that the library posts to _g_sysMsg, but not those that a host posts there.
class TARNIS_EXPORT SystemMessages : public QObject {
    Q_OBJECT
public:
    /// The only instance; never destroyed.
    static SystemMessages& instance();

    /// Posts the text to _g_sysMsg, truncated to 2045 bytes, then emits posted(). Any thread may post.
    void post(const tarnis::SystemMessage& message);

Q_SIGNALS:
    void posted(const tarnis::SystemMessage& message); ///< on the thread that posts it, after _g_sysMsg's signal

private:
    SystemMessages() = default;
};

} // namespace tarnis

Q_DECLARE_METATYPE(tarnis::SystemMessage)
