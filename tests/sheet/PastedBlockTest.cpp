#include "sheet/PastedBlock.h"

#include "lines/LinesFixture.h"

namespace {

class PastedBlockTest : public LinesFixture
{
protected:
    void SetUp() override
    {
        AddOrder(1);
        AddLine(1, 1, 1);
        AddLine(1, 1, 2, "ShpSts = 3");
        AddLine(1, 1, 3);
        AddLine(1, 1, 4);
        Load();
    }

    /// The answers after the block was laid over the rows 1, 2 and 4 from a column of quantities
    /// on, what was passed over, and then what is wrong.
    QString Pasted(const QString &text)
    {
        Load();
        const PastePlan plan
            = PlanPaste(text, list, std::vector{1, 2, 4},
                        std::vector{PasteColumn::Quantity, PasteColumn::Date, PasteColumn::Locked});
        if (plan.IsGood()) {
            LineEdits edits(list);
            Paste(plan, edits);
        }
        QStringList texts;
        for (int row = 1; row <= list.Count(); ++row)
            texts += list.At(row).Now().quantity.ToText() + '/' + list.At(row).Now().date;
        if (plan.locked > 0)
            texts += QString("locked %1").arg(plan.locked);
        if (plan.hiddenRows > 0)
            texts += QString("hidden %1").arg(plan.hiddenRows);
        if (plan.rowsBeyond > 0)
            texts += QString("beyond %1").arg(plan.rowsBeyond);
        for (const auto &[row, column, cell] : plan.wrong)
            texts += QString("wrong %1,%2 %3").arg(row).arg(column).arg(cell);
        return texts.join(' ');
    }
};

} // namespace

TEST_F(PastedBlockTest, LiesOverTheCellsThatAreShown)
{
    const std::pair<const char *, const char *> cases[] = {
        {"50\t2026/12/8\r\n60\t261209\r\n1,000.5\t2026-12-10\r\n",
         "50/20261208 0/ 100/ 1000.5/20261210 locked 2 hidden 1"},
        {"50", "50/ 0/ 100/ 100/"},
        {"\t26/12/08\tx", "100/20261208 0/ 100/ 100/ locked 1"}, // as the grid shows it
        {"50\r\n\r\n70\r\n", "50/ 0/ 100/ 70/ hidden 1"},        // a blank cell leaves its place
        {"50\t12月8日\n7x\t\n-1",
         "100/ 0/ 100/ 100/ locked 1 hidden 1 wrong 1,2 12月8日 wrong 3,1 -1"},
        {"1\n2\n3\n4\n5", "100/ 0/ 100/ 100/ locked 1 hidden 1 beyond 2"},
        {"50\n\n60\n\n\t \r\n", "50/ 0/ 100/ 60/ hidden 1"}, // more was copied than is filled in
        {"\"1,000\"\t\"2026/12/8\"", "1000/20261208 0/ 100/ 100/"},
        {"", "100/ 0/ 100/ 100/"},
    };
    for (const auto &[text, answers] : cases)
        EXPECT_EQ(Pasted(text), answers) << text;
}
