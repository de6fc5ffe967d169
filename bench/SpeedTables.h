#pragma once

#include "BenchReport.h"

/// The tables of the README for pictures of 24 megapixels, as Markdown: each rule with each vector set and
/// without, and what surrounds the rules. What the run does not have is left blank, a row without anything
/// left out.
QString ReadmeTables(const BenchReport& report);
