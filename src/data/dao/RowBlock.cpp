#include "data/dao/RowBlock.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <sys/mman.h>

namespace {

constexpr size_t SmallestChunk = 4096;
constexpr size_t LargePage = 2 << 20;

/// Memory of whole large pages where there is much of it: touching the small pages of a million rows
/// for the first time takes longer than reading them.
char *Allocate(size_t bytes)
{
    const bool isLarge = bytes % LargePage == 0;
    void *chunk = isLarge ? std::aligned_alloc(LargePage, bytes) : std::malloc(bytes);
    if (!chunk)
        throw std::bad_alloc();
    if (isLarge)
        ::madvise(chunk, bytes, MADV_HUGEPAGE);
    return static_cast<char *>(chunk);
}

} // namespace

void RowBlock::Free::operator()(char *chunk) const
{
    std::free(chunk);
}

void RowBlock::Grow(size_t bytes)
{
    const size_t begun = size_t(m_end - m_row);
    m_chunkSize = std::clamp(2 * m_chunkSize, SmallestChunk, LargePage);
    if (begun + bytes > m_chunkSize)
        m_chunkSize = (begun + bytes + LargePage - 1) / LargePage * LargePage;
    m_chunks.emplace_back(Allocate(m_chunkSize));
    char *chunk = m_chunks.back().get();
    if (begun > 0)
        std::memcpy(chunk, m_row, begun);
    m_row = chunk;
    m_end = chunk + begun;
    m_limit = chunk + m_chunkSize;
}
