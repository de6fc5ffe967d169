#pragma once

#include "BenchReport.h"

/// The tables of docs/speed.md for pictures of 24 megapixels, as Markdown: each rule with each vector set and
/// without, and what surrounds the rules. What the run does not have is left blank, a row without anything
/// left out.
QString SpeedTables(const BenchReport& report);
