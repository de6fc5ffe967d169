#include "YDRecord.h"

#include <QByteArray>
#include <QDebug>
#include <QIODevice>

#include <limits>

namespace {

constexpr quint32 BytesOfPoint = 8;                                             ///< in a stream: two qint32
constexpr quint32 MaxPoints = std::numeric_limits<int>::max() / sizeof(QPoint); ///< Qt's containers end there

/// Whether the stream can still give `count` points, as far as its device tells.
bool MayHold(const QDataStream& stream, quint32 count)
{
    const QIODevice* const device = stream.device();
    return device && count <= MaxPoints &&
           (device->isSequential() || count <= device->bytesAvailable() / BytesOfPoint);
}

/// Whether the next bytes of the stream are `expected`; as many are read in any case.
bool ReadBytes(QDataStream& stream, std::string_view expected)
{
    QByteArray bytes(static_cast<int>(expected.size()), Qt::Uninitialized);
    return stream.readRawData(bytes.data(), bytes.size()) == bytes.size() &&
           std::string_view(bytes.constData(), expected.size()) == expected;
}

void Log(const YDRecordName& name, const char* action, int line)
{
    qDebug("[%s:%d] %s %s data error.", name.source, line, action, name.subject);
}

} // namespace

bool YDRecord::WriteTag(QDataStream& stream, std::string_view tag)
{
    const int size = static_cast<int>(tag.size());
    return stream.writeRawData(tag.data(), size) == size;
}

bool YDRecord::ReadTag(QDataStream& stream, std::string_view tag) { return ReadBytes(stream, tag); }

YDRecord::FoundTag YDRecord::ReadTag(QDataStream& stream, std::string_view current, std::string_view older)
{
    Q_ASSERT(older.size() <= current.size());
    QByteArray bytes(static_cast<int>(older.size()), Qt::Uninitialized);
    if (stream.readRawData(bytes.data(), bytes.size()) != bytes.size())
        return FoundTag::None;
    const std::string_view first(bytes.constData(), older.size());
    if (first == older)
        return FoundTag::Older;
    const bool rest = ReadBytes(stream, current.substr(older.size()));
    return rest && first == current.substr(0, older.size()) ? FoundTag::Current : FoundTag::None;
}

void YDRecord::ReadField(QDataStream& stream, QVector<QPoint>& points)
{
    points.clear();
    quint32 count = 0;
    stream >> count;
    if (stream.status() == QDataStream::Ok && !MayHold(stream, count))
        stream.setStatus(QDataStream::ReadPastEnd);
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        QPoint point;
        stream >> point;
        if (stream.status() == QDataStream::Ok)
            points.append(point);
    }
}

void YDRecord::LogReadFailure(const YDRecordName& name, int line)
{
    Log(name, "Read", name.readLine != 0 ? name.readLine : line);
}

void YDRecord::LogWriteFailure(const YDRecordName& name, int line)
{
    Log(name, "Write", name.writeLine != 0 ? name.writeLine : line);
}
