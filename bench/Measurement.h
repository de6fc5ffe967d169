#pragma once

#include "BenchPictures.h"

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

constexpr double NsPerMs = 1e6;

/// Milliseconds that `operation` takes.
double TimeOf(const std::function<void()>& operation);

/// What is measured in one row of the report.
struct BenchRow
{
    using OnPictures = std::function<void(const BenchPictures&)>;

    /// One pass; its milliseconds, or a negative number for a pass that gave none.
    std::function<double(const BenchPictures&)> pass;
    /// What precedes each pass and is not measured.
    OnPictures prepare = [](const BenchPictures&) {};
    /// What follows the last pass.
    std::function<void()> finish = [] {};
    /// Whether a pass works through the picture, so that megapixels a second mean something.
    bool coversPicture = true;
};

/// Registers `row` under "<megapixels>MP/<name>".
///
/// Machines are noisy in ways that no counter shows, so each pass follows a reference pass over a picture
/// of the same size, and the row reports the median ratio of the two ("ratio") beside the median
/// milliseconds of both ("ms", "ref_ms") and, where that means something, megapixels a second ("MP/s"). How
/// noisy the row was tell the quartiles of its ratios ("ratio_low", "ratio_high") and their number
/// ("passes"): as many as six tenths of a second hold, five at least.
void RegisterRow(int megapixels, const std::string& name, const BenchRow& row);

/// Registers what is run once, under "<megapixels>MP/<name>", and reports its counters alone.
void RegisterSingleRow(int megapixels, const std::string& name,
                       const std::function<void(benchmark::State&)>& measure);

/// Has the row of that name, such as "24MP/gamma/vector", not be registered from now on.
void LeaveRowOut(const std::string& fullName);
