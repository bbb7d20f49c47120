// The log in a folder of its own, and what it has written.
#pragma once

#include "tarnis/foundation/log.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace tarnis::testing {

/// Tests of the log derive from it.
class LogFixture : public QObject {
protected:
    std::unique_ptr<QTemporaryDir> m_dir;

    QString path(const QString& name = QStringLiteral("run.log")) const { return m_dir->filePath(name); }
    void openLog(int level = 0, const QString& name = QStringLiteral("run.log"))
    {
        initlog(path(name).toStdString(), level);
    }
    QByteArray fileContent(const QString& name = QStringLiteral("run.log")) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    // Closes the log and returns its entries, without the leading empty lines and the final line feed.
    QList<QByteArray> lines()
    {
        closelog();
        QByteArray content = fileContent();
        if (!content.startsWith("\n\n") || !content.endsWith('\n'))
            return { "malformed file" };
        content = content.mid(2);
        content.chop(1);
        return content.isEmpty() ? QList<QByteArray>() : content.split('\n');
    }
    // Level and message of every entry.
    QList<QByteArray> messages()
    {
        QList<QByteArray> texts;
        const QList<QByteArray> entries = lines();
        for (const QByteArray& line : entries)
            texts.append(line.mid(line.indexOf('[')));
        return texts;
    }
    void makeFile(const QString& name, const QByteArray& content)
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    void makeFileOfSize(qint64 size)
    {
        makeFile(QStringLiteral("run.log"), "first");
        QVERIFY(QFile::resize(path(), size));
    }
};

} // namespace tarnis::testing
