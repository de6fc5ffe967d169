#include "YDRecord.h"

#include <QByteArray>
#include <QDebug>

bool YDRecord::WriteTag(QDataStream& stream, std::string_view tag)
{
    const int size = static_cast<int>(tag.size());
    return stream.writeRawData(tag.data(), size) == size;
}

bool YDRecord::ReadTag(QDataStream& stream, std::string_view tag)
{
    QByteArray bytes(static_cast<int>(tag.size()), Qt::Uninitialized);
    return stream.readRawData(bytes.data(), bytes.size()) == bytes.size() &&
           std::string_view(bytes.constData(), tag.size()) == tag;
}

void YDRecord::Log(const Failure& failure)
{
    qDebug("[%s:%d] %s", failure.source, failure.line, failure.message);
}
