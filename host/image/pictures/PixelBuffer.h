#pragma once

#include <QtGlobal>

#include <atomic>
#include <memory>

/// Memory for the pixels of pictures: aligned to cache lines, shared by reference count, recycled.
///
/// Fresh pages of a large picture cost several times what the work on it costs, so a few large buffers
/// that were let go are kept for the next request of the same size, and large requests ask the system for
/// huge pages. Safe to call from any thread.
namespace PixelBuffer {

enum class Content
{
    Zeroed,        ///< every byte is 0
    Uninitialized, ///< whatever the memory held; the caller writes every byte it will read
};

/// `bytes` bytes whose address is a multiple of 64. Null where the system has no such memory, and for
/// 0 bytes or fewer.
std::shared_ptr<void> Allocate(qsizetype bytes, Content content);

/// Whether `handle`, which shares in a buffer of Allocate(), has `bytes` readable bytes from its address on.
/// Of memory that came from elsewhere nothing is known: true.
bool HasBytes(const std::shared_ptr<const unsigned char>& handle, qint64 bytes);

/// Gives the buffers kept for recycling back to the system.
void Trim();

/// Bytes that stand ready for recycling.
qsizetype RecyclableBytes();

/// Copies `rows` rows of `bytesPerRow` bytes, which start `fromStride` and `toStride` bytes after one
/// another, on all cores. Stops at a row where `abort` (which may be null) is set. The two areas must not
/// overlap. Returns whether every row was copied.
bool CopyRows(const void* from, qsizetype fromStride, void* to, qsizetype toStride, qsizetype bytesPerRow,
              int rows, const std::atomic<bool>* abort = nullptr);

} // namespace PixelBuffer
