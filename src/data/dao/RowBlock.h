#pragma once

#include <cstddef>
#include <memory>
#include <vector>

/// The bytes of many rows, one behind the other in chunks that stay where they are.
class RowBlock
{
public:
    /// Where the row being written goes on, with room for this many bytes. What is written is made
    /// known to WroteTo before the next call.
    char *Room(size_t bytes)
    {
        if (size_t(m_limit - m_end) < bytes)
            Grow(bytes);
        return m_end;
    }
    void WroteTo(char *end) { m_end = end; }

    /// Ends the row and returns where it begins.
    const char *EndRow()
    {
        const char *row = m_row;
        m_row = m_end;
        return row;
    }

    /// Writes over the rows ended before, of which none is needed any more.
    void Reuse()
    {
        m_chunks.erase(m_chunks.begin(), m_chunks.empty() ? m_chunks.end() : m_chunks.end() - 1);
        m_row = m_end = m_chunks.empty() ? nullptr : m_chunks.back().get();
    }

private:
    void Grow(size_t bytes);

    std::vector<std::unique_ptr<char[]>> m_chunks;
    size_t m_chunkSize = 0; ///< of the last one
    char *m_row = nullptr;  ///< where the row being written begins
    char *m_end = nullptr;
    char *m_limit = nullptr;
};
