#pragma once

#include <atomic>
#include <functional>

/// Calls `work(first, last)` for bands of rows that together are [top, bottom), on all cores, the calling
/// thread among them, and returns when every band is done.
///
/// Bands hold `rowsPerBand` rows (1 or more; the last may hold fewer) and are handed out one by one, so
/// that threads stay busy whatever a row costs. `abort`, which may be null, is tested before each band.
/// Returns whether every band was worked on. May be called from a task of the global thread pool.
bool ForEachRowBand(int top, int bottom, int rowsPerBand, const std::atomic<bool>* abort,
                    const std::function<void(int first, int last)>& work);

/// Calls `work(row)` for the rows [top, bottom) in the same way, neighbouring rows on one thread, so that
/// what is prefetched past the end of a row is not in vain. `abort`, which may be null, is tested before each
/// row.
void ForEachRow(int top, int bottom, const std::atomic<bool>* abort,
                const std::function<void(int row)>& work);
