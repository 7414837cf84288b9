#include "data/dao/RowBlock.h"

#include <algorithm>
#include <cstring>

void RowBlock::Grow(size_t bytes)
{
    constexpr size_t SmallestChunk = 4096;
    constexpr size_t LargestChunk = 256 << 10; // but for a row that is larger
    const size_t begun = size_t(m_end - m_row);
    m_chunkSize = std::clamp(2 * m_chunkSize, SmallestChunk, LargestChunk);
    m_chunkSize = std::max(m_chunkSize, begun + bytes);
    char *chunk = m_chunks.emplace_back(std::make_unique_for_overwrite<char[]>(m_chunkSize)).get();
    if (begun > 0)
        std::memcpy(chunk, m_row, begun);
    m_row = chunk;
    m_end = chunk + begun;
    m_limit = chunk + m_chunkSize;
}
