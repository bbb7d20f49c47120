/// @file
/// The one-way channel by which the library tells its host what happens at system level: connect to
/// _g_sysMsg's onSysMsg(). Any thread may post.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QObject>

/// Emits every text that it is given.
class TARNIS_EXPORT SysMsg : public QObject {
    Q_OBJECT
public:
    /// A channel of a host's own; the library posts to _g_sysMsg only.
    explicit SysMsg(QObject* parent = nullptr);

    /// Emits the text.
    SysMsg& operator<<(const QString& text);
    /// Emits the value in base 10.
    SysMsg& operator<<(int value);

    /// Formats as printf does, cuts to 2045 bytes, takes them as UTF-8 and emits. Returns the length that the whole
    /// text would have, or a negative value, without a signal, if the format fails.
    int postLog(const char* format, ...)
#if defined(__GNUC__)
        __attribute__((format(printf, 2, 3)))
#endif
        ;

Q_SIGNALS:
    void onSysMsg(const QString& message); ///< one text, emitted on the thread that posts it
};

/// The instance to which all of the library posts. Lives from the library's load to its unload.
extern TARNIS_EXPORT SysMsg _g_sysMsg;
