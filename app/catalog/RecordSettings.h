#pragma once

#include "YDAdjustmentWidget.h"
#include "catalog/FieldSettings.h"

#include <QDataStream>
#include <QIODevice>

#include <string_view>
#include <type_traits>

/// The settings of an adjustment whose widget keeps a parameter record with a stream.
///
/// `Params` is the widget's own record, or one that lists the fields of a record which cannot list them
/// itself, and converts to and from it.
template <class Widget, class Params = typename Widget::Params>
class RecordSettings : public FieldSettings<Params>
{
public:
    bool HasPreset() const override { return true; }

    QByteArray ToPreset() const override
    {
        QByteArray preset;
        QDataStream stream(&preset, QIODevice::WriteOnly);
        Prepare(stream);
        return this->m_params.Write(stream) ? preset : QByteArray();
    }

    [[nodiscard]] bool FromPreset(const QByteArray& preset) override
    {
        QDataStream stream(preset);
        Prepare(stream);
        Params params;
        const bool isWhole = params.Read(stream) && stream.atEnd();
        this->m_params = isWhole ? params : Params();
        return isWhole;
    }

    bool IsTagOf(const QByteArray& preset) const override
    {
        if constexpr (HasOlderTag<Params>::value)
            return BeginsWith(preset, Params::Tag) || BeginsWith(preset, Params::OlderTag);
        else
            return BeginsWith(preset, Params::Tag);
    }

    void ShowIn(YDAdjustmentWidget& widget) const override
    {
        static_cast<Widget&>(widget).SetValue(this->m_params);
    }

    void TakeFrom(const YDAdjustmentWidget& widget) override
    {
        this->m_params = static_cast<const Widget&>(widget).GetValue();
    }

private:
    template <class Record, class = void>
    struct HasOlderTag : std::false_type
    {};
    template <class Record>
    struct HasOlderTag<Record, std::void_t<decltype(Record::OlderTag)>> : std::true_type
    {};

    static bool BeginsWith(const QByteArray& preset, std::string_view tag)
    {
        return preset.startsWith(QByteArray::fromRawData(tag.data(), int(tag.size())));
    }

    /// The stream's form, said in this one place.
    static void Prepare(QDataStream& stream)
    {
        stream.setVersion(QDataStream::Qt_5_15);
        stream.setByteOrder(QDataStream::BigEndian);
    }
};
