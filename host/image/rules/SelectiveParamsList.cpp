#include "image/SelectiveParamsList.h"

#include <QByteArray>
#include <QDataStream>

namespace {

constexpr int TagLength = static_cast<int>(SelectiveParamsList::Tag.size());

bool ReadTag(QDataStream& stream)
{
    QByteArray bytes(TagLength, Qt::Uninitialized);
    return stream.readRawData(bytes.data(), TagLength) == TagLength &&
           std::string_view(bytes.constData(), TagLength) == SelectiveParamsList::Tag;
}

} // namespace

QList<SelectiveParams> SelectiveParamsList::NoChange()
{
    QList<SelectiveParams> targets;
    targets.reserve(Ranges);
    for (int i = 0; i < Ranges; ++i)
        targets.append(SelectiveParams());
    return targets;
}

bool SelectiveParamsList::Read(QDataStream& stream)
{
    quint32 count = 0;
    if (!ReadTag(stream))
        return false;
    stream >> count;
    if (count != Ranges)
        return false;
    SelectiveParamsList read;
    for (SelectiveParams& params : read.targets)
        stream >> params.cyan >> params.magenta >> params.yellow >> params.black;
    qint32 number = 0;
    stream >> number;
    read.mode = static_cast<Mode>(number);
    if (stream.status() != QDataStream::Ok)
        return false;
    *this = read;
    return true;
}

bool SelectiveParamsList::Write(QDataStream& stream) const
{
    if (targets.size() != Ranges || stream.writeRawData(Tag.data(), TagLength) != TagLength)
        return false;
    stream << quint32(targets.size());
    for (const SelectiveParams& params : targets)
        stream << params.cyan << params.magenta << params.yellow << params.black;
    stream << qint32(mode);
    return stream.status() == QDataStream::Ok;
}
