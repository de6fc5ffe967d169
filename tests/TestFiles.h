#pragma once

#include <QFile>
#include <QTest>

/// Files that tests write and look at.
namespace TestFiles {

inline QByteArray BytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void Store(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

} // namespace TestFiles
