#include "YDRecord.h"

#include <QByteArray>
#include <QDebug>
#include <QFont>
#include <QIODevice>
#include <QStringList>

#include <algorithm>
#include <limits>

namespace {

constexpr quint32 BytesOfPoint = 8;                       ///< in a stream: two qint32
constexpr quint32 BytesOfText = 4;                        ///< in a stream: at least its length
constexpr int LastWithoutFamilies = QDataStream::Qt_5_12; ///< of the stream versions

/// Whether the stream can still give `count` elements of at least `bytes` each, as far as its device tells.
template <class Element>
bool MayHold(const QDataStream& stream, quint32 count, quint32 bytes)
{
    constexpr quint32 Most = std::numeric_limits<int>::max() / sizeof(Element); // Qt's containers end there
    const QIODevice* const device = stream.device();
    return device && count <= Most && (device->isSequential() || count <= device->bytesAvailable() / bytes);
}

/// Reads a count and as many elements; a list that fails holds what came.
template <class List>
void ReadList(QDataStream& stream, List& list, quint32 bytes)
{
    using Element = typename List::value_type;
    list.clear();
    quint32 count = 0;
    stream >> count;
    if (stream.status() == QDataStream::Ok && !MayHold<Element>(stream, count, bytes))
        stream.setStatus(QDataStream::ReadPastEnd);
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        Element element;
        stream >> element;
        if (stream.status() == QDataStream::Ok)
            list.append(element);
    }
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
    ReadList(stream, points, BytesOfPoint);
}

/// The families, which come last, are what the versions since differ in.
void YDRecord::ReadField(QDataStream& stream, QFont& font)
{
    const int version = stream.version();
    stream.setVersion(std::min(version, LastWithoutFamilies));
    stream >> font;
    stream.setVersion(version);
    if (version <= LastWithoutFamilies)
        return;
    QStringList families;
    ReadList(stream, families, BytesOfText);
    font.setFamilies(families);
}

void YDRecord::LogReadFailure(const YDRecordName& name, int line)
{
    Log(name, "Read", name.readLine != 0 ? name.readLine : line);
}

void YDRecord::LogWriteFailure(const YDRecordName& name, int line)
{
    Log(name, "Write", name.writeLine != 0 ? name.writeLine : line);
}
