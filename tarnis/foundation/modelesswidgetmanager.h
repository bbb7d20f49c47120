// Keeps track of a widget's open modeless windows, so that a second request shows the existing window. A plain member
// of the widget that opens them; GUI thread only.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QDebug>
#include <QLoggingCategory>
#include <QMap>
#include <QObject>
#include <QThread>
#include <QWidget>

/// The owner looks up a key in `map`. If there is a window, the owner calls show() and activateWindow(). Otherwise it
/// creates one, inserts it, connects its destroyed(QObject*) to onDestroyed(QObject*), sets Qt::WA_DeleteOnClose and
/// shows it.
class TARNIS_EXPORT ModelessWidgetManager : public QObject {
    Q_OBJECT
public:
    /// Empty. A member of its owner needs no parent.
    explicit ModelessWidgetManager(QObject* parent = nullptr)
        : QObject(parent)
    {
    }

    /// Maps a key (any pointer that identifies the window's purpose) to the open window. The windows are not owned.
    QMap<void*, QWidget*> map;

Q_SIGNALS:
    /// A window was destroyed. `key` is null for a window that was not in the map.
    void onClosed(void* key);

public Q_SLOTS:
    /// Removes the window's entry and emits onClosed(). An unknown window removes the entry of the null key, if any.
    void onDestroyed(QObject* obj)
    {
        static const QLoggingCategory category("tarnis.foundation");
        qCDebug(category) << "modelesswidgetmanager.h"
                          << ":" << __LINE__ << QThread::currentThreadId() << "|"
                          << "Destroyed:" << static_cast<const void*>(obj);
        void* key = nullptr;
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
            if (static_cast<QObject*>(entry.value()) == obj) {
                key = entry.key();
                break;
            }
        }
        map.remove(key);
        Q_EMIT onClosed(key);
    }
};
