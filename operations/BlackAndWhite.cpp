#include "operations/BlackAndWhite.h"

#include "RuleTask.h"
#include "image/YDIterativeBlackAndWhiteTransformation.h"

#include <array>

namespace {

using operations::BlackAndWhite;

struct Weights
{
    float r;
    float g;
    float b;
};

/// The weights of the fixed sets, by type.
constexpr std::array<Weights, BlackAndWhite::Custom> FixedWeights{{
    {0.333f, 0.333f, 0.333f},
    {0.212671f, 0.71516f, 0.072169f},
    {0.212671f, 0.71516f, 0.072169f},
    {0.3f, 0.59f, 0.11f},
    {0.212671f, 0.71516f, 0.072169f},
}};

Weights WeightsOf(const BlackAndWhite& settings)
{
    const bool isFixed = settings.type >= BlackAndWhite::Average && settings.type < BlackAndWhite::Custom;
    return isFixed ? FixedWeights[std::size_t(settings.type)] : Weights{settings.r, settings.g, settings.b};
}

} // namespace

bool BlackAndWhite::Read(QDataStream& stream)
{
    return YDRecord::ReadTag(stream, Tag, OlderTag) != YDRecord::FoundTag::None &&
           YDRecord::ReadFields(stream, *this);
}

bool BlackAndWhite::Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }

float BlackAndWhite::GetR() const { return WeightsOf(*this).r; }

float BlackAndWhite::GetG() const { return WeightsOf(*this).g; }

float BlackAndWhite::GetB() const { return WeightsOf(*this).b; }

operations::Task operations::MakeTask(const BlackAndWhite& settings)
{
    return RuleTask([settings] {
        return YDIterativeBlackAndWhiteTransformation(settings.type == BlackAndWhite::Cie, settings.GetR(),
                                                      settings.GetG(), settings.GetB());
    });
}
