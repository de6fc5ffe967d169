#include "image/PixelBuffer.h"

#include "image/ParallelRows.h"

#include <QtGlobal>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <mutex>
#include <new>
#include <vector>

#if defined(Q_OS_LINUX)
#include <sys/mman.h>
#endif

namespace {

constexpr std::size_t CacheLine = 64;
constexpr qsizetype HugePage = qsizetype(2) << 20;
constexpr std::size_t MostRecycledBuffers = 2; // the copy that a preview works on, and its selection's
constexpr qsizetype MostRecycledBytes = qsizetype(1) << 30;

/// Pages straight from the system where it has them to give: they arrive zeroed.
struct Block
{
    void* memory = nullptr;
    qsizetype bytes = 0;
};

#if defined(Q_OS_LINUX)
Block Reserve(qsizetype bytes)
{
    // One huge page more than asked for, so that the start can be moved to the boundary of one.
    const qsizetype reserved = bytes + HugePage;
    void* const base = mmap(nullptr, static_cast<std::size_t>(reserved), PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (base == MAP_FAILED)
        return {};
    auto* const start = static_cast<std::byte*>(base);
    const auto misalignment = reinterpret_cast<quintptr>(start) % static_cast<quintptr>(HugePage);
    const qsizetype skip = misalignment == 0 ? 0 : HugePage - static_cast<qsizetype>(misalignment);
    if (skip > 0)
        munmap(start, static_cast<std::size_t>(skip));
    if (skip < HugePage)
        munmap(start + skip + bytes, static_cast<std::size_t>(HugePage - skip));
    madvise(start + skip, static_cast<std::size_t>(bytes), MADV_HUGEPAGE);
    return {start + skip, bytes};
}

void GiveBack(const Block& block) { munmap(block.memory, static_cast<std::size_t>(block.bytes)); }
#else
Block Reserve(qsizetype bytes)
{
    void* const memory =
        ::operator new(static_cast<std::size_t>(bytes), std::align_val_t(CacheLine), std::nothrow);
    if (memory)
        std::memset(memory, 0, static_cast<std::size_t>(bytes));
    return {memory, memory ? bytes : 0};
}

void GiveBack(const Block& block) { ::operator delete(block.memory, std::align_val_t(CacheLine)); }
#endif

/// The large buffers that were let go, newest last.
class Recycler
{
public:
    static Recycler& Instance()
    {
        static Recycler* const recycler = new Recycler; // outlives the images of other statics
        return *recycler;
    }

    Block Take(qsizetype bytes)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = std::find_if(m_blocks.rbegin(), m_blocks.rend(),
                                        [bytes](const Block& block) { return block.bytes == bytes; });
        if (found == m_blocks.rend())
            return {};
        const Block block = *found;
        m_blocks.erase(std::next(found).base());
        return block;
    }

    void Keep(const Block& block)
    {
        std::vector<Block> surplus;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_blocks.push_back(block);
            while (m_blocks.size() > MostRecycledBuffers || Sum() > MostRecycledBytes) {
                surplus.push_back(m_blocks.front());
                m_blocks.erase(m_blocks.begin());
            }
        }
        std::for_each(surplus.begin(), surplus.end(), GiveBack);
    }

    void Clear()
    {
        std::vector<Block> blocks;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            blocks.swap(m_blocks);
        }
        std::for_each(blocks.begin(), blocks.end(), GiveBack);
    }

    qsizetype Bytes()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return Sum();
    }

private:
    qsizetype Sum() const
    {
        qsizetype sum = 0;
        for (const Block& block : m_blocks)
            sum += block.bytes;
        return sum;
    }

    std::mutex m_mutex;
    std::vector<Block> m_blocks;
};

/// Lets a buffer go, and knows where it lies.
struct LetGo
{
    Block block;
    bool isRecycled = false;

    void operator()(void*) const
    {
        if (isRecycled)
            Recycler::Instance().Keep(block);
        else
            ::operator delete(block.memory, std::align_val_t(CacheLine));
    }
};

std::shared_ptr<void> AllocateSmall(qsizetype bytes, PixelBuffer::Content content)
{
    const auto size = static_cast<std::size_t>(bytes);
    void* const memory = ::operator new(size, std::align_val_t(CacheLine), std::nothrow);
    if (!memory)
        return {};
    if (content == PixelBuffer::Content::Zeroed)
        std::memset(memory, 0, size);
    return {memory, LetGo{{memory, bytes}, false}};
}

void ZeroOnAllCores(const Block& block)
{
    const qsizetype pieces = (block.bytes + HugePage - 1) / HugePage;
    ForEachRowBand(0, static_cast<int>(pieces), 1, nullptr, [&block](int first, int last) {
        const qsizetype start = first * HugePage;
        const qsizetype end = std::min(last * HugePage, block.bytes);
        std::memset(static_cast<std::byte*>(block.memory) + start, 0, static_cast<std::size_t>(end - start));
    });
}

} // namespace

std::shared_ptr<void> PixelBuffer::Allocate(qsizetype bytes, Content content)
{
    if (bytes <= 0)
        return {};
    if (bytes < HugePage)
        return AllocateSmall(bytes, content);
    const qsizetype rounded = (bytes + HugePage - 1) / HugePage * HugePage;
    Block block = Recycler::Instance().Take(rounded);
    if (block.memory) {
        if (content == Content::Zeroed)
            ZeroOnAllCores(block);
    } else {
        block = Reserve(rounded);
    }
    if (!block.memory)
        return {};
    return {block.memory, LetGo{block, true}};
}

bool PixelBuffer::HasBytes(const std::shared_ptr<const unsigned char>& handle, qint64 bytes)
{
    const LetGo* const buffer = std::get_deleter<LetGo>(handle);
    if (!buffer)
        return true;
    const auto* const start = static_cast<const unsigned char*>(buffer->block.memory);
    const qint64 before = handle.get() - start;
    return before >= 0 && bytes >= 0 && bytes <= buffer->block.bytes - before;
}

void PixelBuffer::Trim() { Recycler::Instance().Clear(); }

qsizetype PixelBuffer::RecyclableBytes() { return Recycler::Instance().Bytes(); }

bool PixelBuffer::CopyRows(const void* from, qsizetype fromStride, void* to, qsizetype toStride,
                           qsizetype bytesPerRow, int rows, const std::atomic<bool>* abort)
{
    constexpr int RowsPerBand = 8;
    return ForEachRowBand(0, rows, RowsPerBand, abort, [=](int first, int last) {
        for (int y = first; y < last; ++y)
            std::memcpy(static_cast<std::byte*>(to) + y * toStride,
                        static_cast<const std::byte*>(from) + y * fromStride,
                        static_cast<std::size_t>(bytesPerRow));
    });
}
