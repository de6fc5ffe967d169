#pragma once

#include "catalog/FieldSettings.h"

/// The settings of an adjustment whose widget keeps its values in the controls alone, so that no preset can
/// be stored. `Params` lists them as a parameter record lists its fields, and has besides `void
/// ShowIn(Widget&) const` and `void TakeFrom(const Widget&)`.
template <class Widget, class Params>
class StreamlessSettings : public FieldSettings<Params>
{
public:
    bool HasPreset() const override { return false; }

    QByteArray ToPreset() const override { return {}; }

    [[nodiscard]] bool FromPreset(const QByteArray&) override
    {
        this->m_params = Params();
        return false;
    }

    bool IsTagOf(const QByteArray&) const override { return false; }

    void ShowIn(YDAdjustmentWidget& widget) const override
    {
        this->m_params.ShowIn(static_cast<Widget&>(widget));
    }

    void TakeFrom(const YDAdjustmentWidget& widget) override
    {
        this->m_params.TakeFrom(static_cast<const Widget&>(widget));
    }
};
