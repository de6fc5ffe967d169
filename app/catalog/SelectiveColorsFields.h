#pragma once

#include "YDRecord.h"
#include "image/SelectiveParamsList.h"

#include <QDataStream>

#include <array>

/// The record of the selective colours, which belongs to the image library, as a list of fields.
struct SelectiveColorsFields
{
    using Inks = std::array<float, 4>; ///< cyan, magenta, yellow, black; per cent

    std::array<Inks, SelectiveParamsList::Ranges> targets{}; ///< reds, yellows, ..., blacks
    int mode = SelectiveParamsList::Relative;

    static constexpr std::string_view Tag = SelectiveParamsList::Tag;
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("targets", self.targets, YDRecord::Range{-100, 100}) &&
               visit("mode", self.mode, YDRecord::Range{0, 1});
    }

    SelectiveColorsFields() = default;
    SelectiveColorsFields(const SelectiveParamsList& params) : mode(params.mode)
    {
        for (int i = 0; i < SelectiveParamsList::Ranges; ++i) {
            const SelectiveParams target = params.targets.value(i);
            targets[std::size_t(i)] = {target.cyan, target.magenta, target.yellow, target.black};
        }
    }
    operator SelectiveParamsList() const
    {
        SelectiveParamsList params;
        params.targets.clear();
        for (const Inks& inks : targets)
            params.targets.append({inks[0], inks[1], inks[2], inks[3]});
        params.mode = Mode(mode);
        return params;
    }

    [[nodiscard]] bool Read(QDataStream& stream)
    {
        SelectiveParamsList params;
        const bool isWhole = params.Read(stream);
        if (isWhole)
            *this = params;
        return isWhole;
    }
    [[nodiscard]] bool Write(QDataStream& stream) const { return SelectiveParamsList(*this).Write(stream); }
};
