#pragma once

#include "YDRecordName.h"
#include "adjustmentgui_operations_export.h"

#include <QDataStream>
#include <QPoint>
#include <QVector>

#include <array>
#include <string_view>
#include <type_traits>
#include <utility>

class QFont;

/// What every adjustment's parameter record does the same way.
///
/// A record `Params` is a plain struct that says its stream tag and lists its fields once, in stream order:
///
///     static constexpr std::string_view Tag = "KVTemperature 1.00000";
///     template <class Self, class Visitor> static bool VisitFields(Self& self, Visitor&& visit)
///     {
///         return visit("temperature", self.temperature, YDRecord::Range{1000, 40000}) && ...;
///     }
///
/// A visitor is called with the field's name, the field and, for numbers, the range that its control
/// offers; it returns whether to go on. Reading, writing and comparing walk that list here, the command
/// line and JSON in the programs.
///
/// In a stream a record is its tag as raw Latin-1 bytes, without length or terminator, and its fields as
/// QDataStream writes them. The version is part of the tag. Nothing is range-checked when it is read: whoever
/// uses a field is ready for every value. A colour may even be of a model that there is not (ColorToRgba()).
namespace YDRecord {

/// The values that a field's control offers, both ends included.
struct Range
{
    double minimum;
    double maximum;
};

/// What a record's flags are in its stream.
enum class FlagForm
{
    Byte, ///< as QDataStream writes a bool
    Int   ///< a qint32, 0 or 1; read, anything but 0 is true
};

/// Writes the tag; false, with nothing more to be written, if not all of it went out.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT bool WriteTag(QDataStream& stream, std::string_view tag);

/// Reads as many bytes as the tag has; false if fewer came or they differ.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT bool ReadTag(QDataStream& stream, std::string_view tag);

/// Which of two tags a stream begins with.
enum class FoundTag
{
    None,
    Older,
    Current
};

/// Reads the tag of a record that an older release wrote under a tag of its own, `older`, shorter than
/// `current`: as many bytes as the shorter has, and only if they are not it the rest of the longer.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT FoundTag ReadTag(QDataStream& stream, std::string_view current,
                                                               std::string_view older);

/// Logs "[source:line] Read ... data error." as a debug line; `line` where the name knows none.
ADJUSTMENTGUI_OPERATIONS_EXPORT void LogReadFailure(const YDRecordName& name, int line);
/// The same for a record that could not be written.
ADJUSTMENTGUI_OPERATIONS_EXPORT void LogWriteFailure(const YDRecordName& name, int line);

template <class Field>
void WriteField(QDataStream& stream, const Field& field)
{
    stream << field;
}
template <class Field>
void ReadField(QDataStream& stream, Field& field)
{
    stream >> field;
}

/// Reads a count and as many points. A count that the device cannot hold fails with ReadPastEnd before
/// anything is allocated; on a sequential device, whose end nobody knows, the list grows as its points come.
/// After a failure the list holds what came.
ADJUSTMENTGUI_OPERATIONS_EXPORT void ReadField(QDataStream& stream, QVector<QPoint>& points);

/// A font in the form of QDataStream's own operator, but for its list of families: a count that the device
/// cannot hold fails with ReadPastEnd before anything is allocated, as in a list of points. Its numbers are
/// as they came, and a size may be infinite or none.
ADJUSTMENTGUI_OPERATIONS_EXPORT void ReadField(QDataStream& stream, QFont& font);

template <class Element, std::size_t Size>
void WriteField(QDataStream& stream, const std::array<Element, Size>& fields)
{
    for (const Element& field : fields)
        WriteField(stream, field);
}
template <class Element, std::size_t Size>
void ReadField(QDataStream& stream, std::array<Element, Size>& fields)
{
    for (Element& field : fields)
        ReadField(stream, field);
}

/// Writes tag and fields; true exactly when all of it went out.
template <FlagForm Flags = FlagForm::Byte, class Params>
[[nodiscard]] bool Write(QDataStream& stream, const Params& params)
{
    if (!WriteTag(stream, Params::Tag))
        return false;
    Params::VisitFields(params, [&stream](const char*, const auto& field, auto...) {
        using Field = std::decay_t<decltype(field)>;
        if constexpr (Flags == FlagForm::Int && std::is_same_v<Field, bool>)
            WriteField(stream, qint32(field));
        else
            WriteField(stream, field);
        return true;
    });
    return stream.status() == QDataStream::Ok;
}

template <class Params, class = void>
struct HasDerived : std::false_type
{};
template <class Params>
struct HasDerived<Params, std::void_t<decltype(std::declval<Params&>().Derive())>> : std::true_type
{};

/// Brings what follows from the fields up to date, in a record that keeps such values and says so with
/// `void Derive()`. Whoever fills the fields calls it.
template <class Params>
void Derive(Params& params)
{
    if constexpr (HasDerived<Params>::value)
        params.Derive();
}

/// Reads what follows the tag; false, with the record half read, if the stream ends inside it.
template <FlagForm Flags = FlagForm::Byte, class Params>
[[nodiscard]] bool ReadFields(QDataStream& stream, Params& params)
{
    Params::VisitFields(params, [&stream](const char*, auto& field, auto...) {
        using Field = std::decay_t<decltype(field)>;
        if constexpr (Flags == FlagForm::Int && std::is_same_v<Field, bool>) {
            qint32 flag = 0;
            ReadField(stream, flag);
            field = flag != 0;
        } else {
            ReadField(stream, field);
        }
        return true;
    });
    Derive(params);
    return stream.status() == QDataStream::Ok;
}

/// Reads tag and fields. A stream that does not begin with the tag leaves the record as it was; one that
/// ends inside the fields leaves it half read, and false is the answer to both.
template <FlagForm Flags = FlagForm::Byte, class Params>
[[nodiscard]] bool Read(QDataStream& stream, Params& params)
{
    return ReadTag(stream, Params::Tag) && ReadFields<Flags>(stream, params);
}

/// Whether all fields of both records are equal.
template <class Params>
[[nodiscard]] bool Equal(const Params& a, const Params& b)
{
    int index = 0;
    return Params::VisitFields(a, [&b, &index](const char*, const auto& ours, auto...) {
        int other = 0;
        bool equal = true;
        Params::VisitFields(b, [&](const char*, const auto& theirs, auto...) {
            if constexpr (std::is_same_v<decltype(ours), decltype(theirs)>)
                equal = equal && (other != index || ours == theirs);
            return other++ != index;
        });
        ++index;
        return equal;
    });
}

/// The stream operators' writing half: logs a record that could not be written, at `line`.
template <class Params>
QDataStream& Insert(QDataStream& stream, const Params& params, const YDRecordName& name, int line)
{
    if (!params.Write(stream))
        LogWriteFailure(name, line);
    return stream;
}

/// The stream operators' reading half: a record that could not be read is logged and becomes the default
/// one, never a half-read one.
template <class Params>
QDataStream& Extract(QDataStream& stream, Params& params, const YDRecordName& name, int line)
{
    if (!params.Read(stream)) {
        LogReadFailure(name, line);
        params = Params();
    }
    return stream;
}

} // namespace YDRecord
