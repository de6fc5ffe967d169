#include "YDRecord.h"

#include <QByteArray>
#include <QDebug>

namespace {

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

void YDRecord::LogReadFailure(const YDRecordName& name, int line)
{
    Log(name, "Read", name.readLine != 0 ? name.readLine : line);
}

void YDRecord::LogWriteFailure(const YDRecordName& name, int line)
{
    Log(name, "Write", name.writeLine != 0 ? name.writeLine : line);
}
