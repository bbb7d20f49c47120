/// @file
/// The channel by which the library reports system-level events to its host: connect to _g_sysMsg's onSysMsg(). Any
/// thread may post.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QObject>

/// Emits every posted text.
class TARNIS_EXPORT SysMsg : public QObject {
    Q_OBJECT
public:
    /// Creates a separate channel for a host; the library posts to _g_sysMsg only.
    explicit SysMsg(QObject* parent = nullptr);

    /// Emits the text.
    SysMsg& operator<<(const QString& text);
    /// Emits the value in base 10.
    SysMsg& operator<<(int value);

    /// Formats as printf does, truncates to 2045 bytes, decodes them as UTF-8 and emits the text. Returns the length of
    /// the untruncated text, or a negative value, without a signal, if the format fails.
    int postLog(const char* format, ...)
#if defined(__GNUC__)
        __attribute__((format(printf, 2, 3)))
#endif
        ;

Q_SIGNALS:
    void onSysMsg(const QString& message); ///< emitted on the thread that posts the text
};

/// The instance that the library posts to. Exists while the library is loaded.
extern TARNIS_EXPORT SysMsg _g_sysMsg;
