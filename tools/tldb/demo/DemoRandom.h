#pragma once

#include <QtGlobal>
#include <iterator>
#include <random>

/// Random numbers for demonstration data. The same seed gives the same numbers on every machine,
/// which the distributions of the standard library do not promise.
class DemoRandom
{
public:
    explicit DemoRandom(quint64 seed)
        : m_engine(seed)
    {
    }

    /// A whole number from `first` to `last`, each as likely.
    qint64 Between(qint64 first, qint64 last)
    {
        return first + qint64(m_engine() % quint64(last - first + 1));
    }

    /// True this many times out of a hundred.
    bool Chance(int percent) { return Between(1, 100) <= percent; }

    /// An entry of a table that is not empty.
    template <typename Table>
    const auto &Pick(const Table &table)
    {
        return table[size_t(Between(0, qint64(std::size(table)) - 1))];
    }

private:
    std::mt19937_64 m_engine;
};
