#include "YDRecord.h"

#include <QByteArray>
#include <QDebug>

bool YDRecord::WriteTag(QDataStream& stream, QLatin1String tag)
{
    return stream.writeRawData(tag.data(), tag.size()) == tag.size();
}

bool YDRecord::ReadTag(QDataStream& stream, QLatin1String tag)
{
    QByteArray bytes(tag.size(), Qt::Uninitialized);
    if (stream.readRawData(bytes.data(), bytes.size()) != bytes.size())
        return false;
    return bytes == QByteArray::fromRawData(tag.data(), tag.size());
}

void YDRecord::Log(const Failure& failure)
{
    qDebug("[%s:%d] %s", failure.source, failure.line, failure.message);
}
