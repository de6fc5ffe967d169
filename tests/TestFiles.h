#pragma once

#include <QFile>
#include <QTest>
#include <QtEndian>

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

/// A TIFF file of one page, as a PC writes it, with that page a second time.
inline QByteArray WithASecondPage(QByteArray tiff)
{
    if (tiff.size() % 2 != 0)
        tiff.append('\0');
    const int directory = int(qFromLittleEndian<quint32>(tiff.constData() + 4));
    const int length = 2 + 12 * qFromLittleEndian<quint16>(tiff.constData() + directory);
    const QByteArray page = tiff.mid(directory, length) + QByteArray(4, '\0'); // no third one
    qToLittleEndian(quint32(tiff.size()), tiff.data() + directory + length);
    return tiff + page;
}

} // namespace TestFiles
