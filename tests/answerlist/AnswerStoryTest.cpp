#include "ListFixture.h"

#include "app/Main.h"
#include "support/Operator.h"
#include "tldb/AnswerFile.h"

#include <QLabel>
#include <QMessageBox>
#include <QTest>

// A day's work at the real windows, from the search to the answer file, with one order that another
// program spoils in between.

namespace {

using enum ListColumn;

class AnswerStoryTest : public ListDatabase
{
protected:
    AnswerStoryTest()
    {
        Change("TLMT0040", "1", "NokiInfPath = 'C:\\C1.TXT'");
        for (const int accNo : {1, 2, 3})
            AddOrder(accNo);
        AddLine(1, 1, 1);
        AddLine(2, 1, 1, "LimDate = '20260521', IndVal = 50");
        AddLine(2, 1, 2, "LimDate = '20260522', IndVal = 50, PayNo = 'P2'");
        AddLine(3, 1, 1, "LimDate = '20260523'");
        SetSearchDefaults(state);
    }

    // Steps.
    /// A step at the list, once it is loaded and no box is open.
    void List(const QString &what, std::function<void()> act)
    {
        hand.Then(
            what,
            [] {
                QWidget *front = Operator::Front("SC030110");
                const auto *grid = front ? front->findChild<SpreadGrid *>("spdList") : nullptr;
                return grid && grid->Redraw() && grid->RowCount() > 0;
            },
            std::move(act));
    }
    void Box(const QString &text)
    {
        hand.At("MsgBox", text, [this, text] {
            const QString shown = static_cast<QMessageBox *>(Operator::Front("MsgBox"))->text();
            if (!shown.startsWith(text))
                hand.Fail("box: " + shown);
            hand.Key(Qt::Key_Return);
        });
    }
    void TypeCell(ListColumn column, int row, const QString &text)
    {
        hand.ClickCell("spdList", int(column), row);
        hand.Keys(text);
        hand.Key(Qt::Key_Return);
    }
    /// Every row: order, sub-number, quantity, date, marks and states.
    QString Shown()
    {
        QStringList rows;
        const auto *grid = hand.Find<SpreadGrid>("spdList");
        for (int row = 1; grid && row <= grid->RowCount(); ++row) {
            const ListRow line(grid->Model().RowText(row));
            rows += QStringList{line.Cell(AccNo),          line.Cell(ShpSubNo),
                                line.Cell(AnswerQuantity), line.AnsweredDate(),
                                line.Line(Marks, 1),       line.IsAnswered() ? "済" : "-"}
                        .join('|');
        }
        return rows.join(' ');
    }

    Operator hand;
};

} // namespace

TEST_F(AnswerStoryTest, SearchSplitAnswerFailMendAndCreate)
{
    hand.At("SC030010", "search", [&] {
        hand.Type("txtCustCD", "C1");
        hand.Click("cmdList");
    });
    List("split the first line twice", [&] {
        TypeCell(AnswerQuantity, 1, "40");
        hand.ClickCell("spdList", int(Order), 1);
        hand.Click("cmdCopy");
        hand.ClickCell("spdList", int(AnswerQuantity), 2);
        TypeCell(AnswerQuantity, 2, "35.5");
        hand.ClickCell("spdList", int(Order), 1);
        hand.Click("cmdCopy");
        EXPECT_EQ(Shown(), "1|1|40.000|| |- 1||24.500|| |- 1||35.500|| |- 2|1|50.000|| |- "
                           "2|2|50.000|| |- 3|1|100.000|| |-");
        TypeCell(AnswerDate, 2, "260610");
        TypeCell(AnswerDate, 3, "260615");
        hand.ClickRow("spdList", 1);
        hand.Click("cmbLimDef");
        hand.ClickRow("spdList", 4);
        hand.ClickRow("spdList", 6, Qt::ShiftModifier);
        hand.Click("cmdLimSet");
    });
    hand.At("InputBox", "date", [&] {
        hand.Keys("260601");
        hand.Key(Qt::Key_Return);
    });
    List("another program deletes a line; create", [&] {
        file.Run("DELETE FROM TLSP0010 WHERE AccNo = 2 AND ShpSubNo = 2");
        hand.ClickRow("spdList", 1);
        hand.Key(Qt::Key_A, Qt::ControlModifier);
        hand.Click("cmdMake");
    });
    Box("データが存在しません");
    Box("登録されませんでした\n注文№ PO-2");
    List("order 1 is stored, 2 and 3 are not", [&] {
        EXPECT_EQ(Stored("AccNo, ShpSubNo, AnsLimDate, AnsLimUmu"),
                  "1|1|20260520|0 1|2|20260610|0 1|3|20260615|0 2|1||0 3|1||0");
        EXPECT_EQ(Shown(), "1|1|40.000|26/05/20| |- 1|2|24.500|26/06/10|*|- "
                           "1|3|35.500|26/06/15|*|- 2|1|50.000|26/06/01|*|- "
                           "2||50.000|26/06/01|*|- 3|1|100.000|26/06/01|*|-");
        // The row left over counts as a split now; its quantity goes to the line that is there.
        TypeCell(AnswerQuantity, 5, "10");
        hand.ClickRow("spdList", 4);
        hand.Click("cmdDetail");
    });
    hand.At("SC030120", "detail of the other line", [&] {
        EXPECT_EQ(hand.Find<QLineEdit>("txtOdrNo")->text(), "PO-2");
        hand.Type("txtAnsVal", "60");
        hand.Type("txtBiko", "it's|late");
        hand.Key(Qt::Key_Return);
        hand.Key(Qt::Key_Return);
    });
    Box("登録されました");
    List("create again", [&] {
        hand.Key(Qt::Key_A, Qt::AltModifier); // no command of the screen
        hand.ClickRow("spdList", 1);
        hand.Key(Qt::Key_A, Qt::ControlModifier);
        hand.Click("cmdMake");
    });
    Box("納期回答作成処理が終了しました");
    List("answered", [&] {
        EXPECT_EQ(Shown(), "1|1|40.000|26/05/20| |済 1|2|24.500|26/06/10|*|済 "
                           "1|3|35.500|26/06/15|*|済 2|1|60.000|26/06/01|*|済 "
                           "2|2|10.000|26/06/01|*|済 3|1|100.000|26/06/01|*|済");
        EXPECT_EQ(hand.Find<QLabel>("MSG")->text(), "");
        hand.Click("cmdExit");
    });
    hand.At("SC030010", "leave", [&] { hand.Click("cmdExit"); });
    hand.Start();
    RunScreens(state);
    ASSERT_EQ(hand.Failure(), "");
    ASSERT_TRUE(hand.IsDone());

    EXPECT_EQ(Stored("AccNo, ShpSubNo, AnsLimDate, ShpDate, ArvExpDate, AnsVal, AnsMark, AnsLimUmu,"
                     "IndVal, Biko"),
              "1|1|20260520|20260517|20260520|40.0|1|3|100.0| "
              "1|2|20260610|20260607|20260610|24.5|2|3|0.0| "
              "1|3|20260615|20260612|20260615|35.5|2|3|0.0| "
              "2|1|20260601|20260529|20260601|60.0|2|3|50.0|it's|late "
              "2|2|20260601|20260529|20260601|10.0|2|3|0.0|it's|late "
              "3|1|20260601|20260529|20260601|100.0|2|3|100.0|");
    // The answer file: a record for each order, a slot for each line, as it is stored.
    QStringList slots_;
    for (const DecodedAnswer &answer : DecodeAnswers(file.folder.Read("C1.TXT"))) {
        EXPECT_TRUE(answer.faults.empty());
        for (const AnsweredDelivery &delivery : answer.deliveries) {
            QStringList values{answer.Value("orderNumber")};
            for (const AnswerValue &value : delivery.values)
                values += value.text;
            slots_ += values.join('|');
        }
    }
    EXPECT_EQ(
        slots_.join(' '),
        file.Rows("SELECT OdrNo, LimDate, PayNo, AnsLimDate, rtrim(rtrim(AnsVal, '0'), '.'),"
                  " AnsMark FROM TLSP0010 ORDER BY AccNo, AccSubNo, IndVal DESC, AnsLimDate"));
}
