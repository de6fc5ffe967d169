#pragma once

#include "YDRecord.h"

#include <QDataStream>

#include <type_traits>

namespace operations {

/// Whether `Value` is a record: settings that have a stream, and so a tag and a name in the log.
template <class Value, class = void>
struct IsRecord : std::false_type
{};
template <class Value>
struct IsRecord<Value, std::void_t<decltype(Value::Tag), decltype(Value::LogName)>> : std::true_type
{};

/// Logs a record that could not be written.
template <class Value, std::enable_if_t<IsRecord<Value>::value, int> = 0>
QDataStream& operator<<(QDataStream& stream, const Value& record)
{
    return YDRecord::Insert(stream, record, Value::LogName, __LINE__);
}

/// A record that cannot be read is logged and becomes the default one.
template <class Value, std::enable_if_t<IsRecord<Value>::value, int> = 0>
QDataStream& operator>>(QDataStream& stream, Value& record)
{
    return YDRecord::Extract(stream, record, Value::LogName, __LINE__);
}

} // namespace operations
