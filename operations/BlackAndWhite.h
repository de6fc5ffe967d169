#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

namespace operations {

/// Grey by a weighted sum of the channels.
struct ADJUSTMENTGUI_OPERATIONS_EXPORT BlackAndWhite
{
    /// Whose weights are in force.
    enum Type
    {
        Average,
        Luminance,
        D65,
        Ntsc,
        Cie, ///< the weights of Luminance, summed in linear light
        Custom
    };

    float r = 0.333f; ///< custom weights, 0..1 in the panel, kept while another set is selected
    float g = 0.333f;
    float b = 0.333f;
    qint32 type = Average; ///< a Type; any other number stands for custom weights with no button checked

    static constexpr std::string_view Tag = "KVBlackAndWhite 1.00000";
    /// What an older release called the same record.
    static constexpr std::string_view OlderTag = "KVDesaturate 1.00000";
    static constexpr YDRecordName LogName{"src/YDBlackAndWhiteWidget", "BlackAndWhite"};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        constexpr YDRecord::Range Weight{0, 1};
        return visit("type", self.type, YDRecord::Range{Average, Custom}) && visit("r", self.r, Weight) &&
               visit("g", self.g, Weight) && visit("b", self.b, Weight);
    }
    [[nodiscard]] bool Read(QDataStream& stream);
    [[nodiscard]] bool Write(QDataStream& stream) const;

    /// The weights in force.
    float GetR() const;
    float GetG() const;
    float GetB() const;
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const BlackAndWhite& settings);

} // namespace operations
