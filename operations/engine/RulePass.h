#pragma once

#include "YDAdjustmentJob.h"

#include <QRect>

#include <atomic>
#include <functional>

class BaseTransformation;
class YDSelectionArea;

/// A rule over a whole picture or through a selection, in one pass over the pixels: copying from the source
/// of the preview, the rule and the blend are done to pieces of a row while these are in the nearest cache.
///
/// The bytes are those of one step after the other. Rows go to all cores, the calling thread among them, and
/// are given out until `abort` is set. `onRow` is called on any thread for each step of a row.
namespace RulePass {

/// Copies the job's source, which is not empty, into its image and applies the rule to that.
void CopyAndApply(const YDAdjustmentJob& job, const BaseTransformation& rule, const std::atomic<bool>& abort,
                  const std::function<void()>& onRow);

/// Applies the rule to the job's image through its selection, and copies the source into it before if there
/// is one. `onRow` is called for each row that the selection covers, and once more for each that is blended.
void ApplyThroughSelection(const YDAdjustmentJob& job, const YDSelectionArea& selected,
                           const BaseTransformation& rule, const std::atomic<bool>& abort,
                           const std::function<void()>& onRow);

} // namespace RulePass
