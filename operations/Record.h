#pragma once

#include "YDRecord.h"

#include <QDataStream>

#include <type_traits>

namespace operations {

/// Whether `Settings` is a record: settings that have a stream, and so a tag and a name in the log.
template <class Settings, class = void>
struct IsRecord : std::false_type
{};
template <class Settings>
struct IsRecord<Settings, std::void_t<decltype(Settings::Tag), decltype(Settings::LogName)>> : std::true_type
{};

/// Logs a record that could not be written.
template <class Settings, std::enable_if_t<IsRecord<Settings>::value, int> = 0>
QDataStream& operator<<(QDataStream& stream, const Settings& settings)
{
    return YDRecord::Insert(stream, settings, Settings::LogName, __LINE__);
}

/// A record that cannot be read is logged and becomes the default one.
template <class Settings, std::enable_if_t<IsRecord<Settings>::value, int> = 0>
QDataStream& operator>>(QDataStream& stream, Settings& settings)
{
    return YDRecord::Extract(stream, settings, Settings::LogName, __LINE__);
}

} // namespace operations
