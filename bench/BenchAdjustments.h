#pragma once

#include "KVAdjustmentProcessingTemplate.h"
#include "YDAdjustmentProcessingTemplate.h"
#include "image/BaseTransformation.h"

#include <QVariant>

#include <functional>
#include <string>
#include <type_traits>
#include <vector>

/// An adjustment to be measured.
struct BenchAdjustment
{
    enum class Road
    {
        Vector,  ///< as the library chooses: with vector instructions where there are any
        Generic, ///< pixel by pixel
    };
    /// Over `image`, which is made from `source` before where that is not empty.
    using Rule = std::function<void(const RGBA32iImage& image, const RGBA32iImage& source, Road road)>;

    std::string name;            ///< in the catalogue, unless there is no control
    Rule rule;                   ///< runs the bare transformation; null: it is none
    const char* control;         ///< object name of a control in the panel; null: the bare rule alone
    const char* property;        ///< of the control, such as "value"
    QVariant values[2];          ///< what the property is set to in turn; each asks for a new preview
    const char* settings = "{}"; ///< JSON of what the dialog shows at first besides its defaults
    /// How the control is set where that is no property of it; false if it is not the control meant.
    bool (*set)(QObject* control, const QVariant& value) = nullptr;
    bool isPreviewOnly = false; ///< the widget converts nothing; what the catalogue makes of it is measured
};

/// Every adjustment that is measured, a line each.
const std::vector<BenchAdjustment>& BenchAdjustments();

/// `T` for the generic path only.
template <class T>
class GenericOnly : public T
{
public:
    explicit GenericOnly(const T& transformation) : T(transformation) {}
    bool AllowsVectorProcessing() const override { return false; }
};

/// The rule of a transformation, iterative or a pixel functor.
template <class T>
BenchAdjustment::Rule RuleOf(const T& transformation)
{
    if constexpr (std::is_base_of_v<BaseTransformation, T>)
        return [transformation](const RGBA32iImage& image, const RGBA32iImage& source,
                                BenchAdjustment::Road road) {
            YDAdjustmentJob job;
            job.image = image;
            job.source = source;
            if (road == BenchAdjustment::Road::Vector)
                YDAdjustmentProcessingTemplate<T>(nullptr, transformation).Run(job);
            else
                YDAdjustmentProcessingTemplate<GenericOnly<T>>(nullptr, GenericOnly<T>(transformation))
                    .Run(job);
        };
    else
        return RuleOf(YDIterativeAdjustmentTransformation<T>(transformation));
}
