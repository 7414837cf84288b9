#include "answerlist/OrderIndex.h"

#include <gtest/gtest.h>
#include <random>

namespace {

std::vector<int> Walk(const std::vector<qint64> &accNos, qint64 accNo)
{
    std::vector<int> rows;
    for (size_t at = 0; at < accNos.size(); ++at)
        if (accNos[at] == accNo)
            rows.push_back(int(at) + 1);
    return rows;
}

} // namespace

TEST(OrderIndexTest, RowsAreThoseOfAWalkAfterAnySequenceOfChanges)
{
    std::mt19937 random(20261125);
    const auto upTo = [&](size_t highest) { return size_t(random() % (highest + 1)); };
    std::vector<qint64> accNos;
    for (int row = 0; row < 60; ++row)
        accNos.push_back(qint64(upTo(7)) * 3'000'000'000);
    OrderIndex index;
    index.Build(accNos);
    for (int step = 0; step < 600; ++step) {
        // Grows to begin with and shrinks to nothing at the end.
        const bool isInsert = accNos.empty() || upTo(9) < (step < 200 ? 7u : 3u);
        if (isInsert) {
            const size_t at = upTo(accNos.size());
            const qint64 accNo = qint64(upTo(9)) * 3'000'000'000;
            accNos.insert(accNos.begin() + qint64(at), accNo);
            index.Insert(accNo, int(at) + 1);
        } else {
            const size_t at = upTo(accNos.size() - 1);
            index.Remove(accNos[at], int(at) + 1);
            accNos.erase(accNos.begin() + qint64(at));
        }
        for (qint64 order = 0; order <= 10; ++order)
            ASSERT_EQ(index.Rows(order * 3'000'000'000), Walk(accNos, order * 3'000'000'000))
                << "order " << order << " after step " << step;
    }
    index.Build({5, 4, 5});
    EXPECT_EQ(index.Rows(5), (std::vector<int>{1, 3})) << "a new index forgets the old one";
    index.Clear();
    EXPECT_TRUE(index.Rows(5).empty());
}
