#include "SheetFixture.h"

#include "platform/ShiftJis.h"

#include <QElapsedTimer>
#include <functional>

namespace {

/// Three lines of two orders of 100 pieces: the second one's are in two parts.
class SheetPlanTest : public SheetFixture
{
protected:
    void SetUp() override
    {
        AddOrder(1);
        AddLine(1, 1, 1);
        AddOrder(2);
        AddLine(2, 1, 1, "IndVal = 60");
        AddLine(2, 1, 2, "IndVal = 40, AnsVal = 40, AnsLimDate = '20260520'");
        Load();
    }

    /// What somebody else or an earlier run has done to a line.
    void Answer(const QString &changes)
    {
        Change("TLSP0010", "AccNo = 1", changes);
        Load();
    }

    using Edit = std::function<void(EditedFile &file)>;
};

constexpr auto Quantity = SheetHeading::AnswerQuantity;
constexpr auto Date = SheetHeading::AnswerDate;
constexpr auto ShpSubNo = SheetHeading::ShpSubNo;

} // namespace

TEST_F(SheetPlanTest, WhatEachEditMeans)
{
    const QString broken = "引用符（\"）の対応が正しくありません";
    const std::pair<Edit, QString> cases[] = {
        {[](EditedFile &) {}, "=3"},
        {[](EditedFile &file) { file.Cell(1, Date) = "2026/12/8"; }, "2:100/=>100/20261208 =2"},
        {[](EditedFile &file) { file.Cell(1, Quantity) = "50.0"; }, "2:100/=>50/ =2"},
        {[](EditedFile &file) { file.Cell(1, Quantity) = "\"100.000\""; }, "=3"},
        {[](EditedFile &file) { file.Cell(3, Date) = "2026-5-20"; }, "=3"},
        {[](EditedFile &file) { file.Cell(3, Date) = "5月20日"; }, "=3"},
        {[](EditedFile &file) { file.Cell(3, Date) = "５月２１日"; },
         "4:日付ではありません[5月21日] =2"},
        {[](EditedFile &file) { file.Cell(3, Date) = ""; }, "4:40/20260520=>40/ =2"},
        {[](EditedFile &file) { file.Cell(1, Date) = "12月8日"; },
         "2:日付ではありません[12月8日] =2"},
        {[](EditedFile &file) { file.Cell(1, Quantity) = ""; }, "2:数量ではありません =2"},
        {[](EditedFile &file) { file.Cell(1, Quantity) = "=1+1"; },
         "2:数量ではありません[=1+1] =2"},
        {[](EditedFile &file) { file.Cell(1, Quantity) = "101"; },
         "2:回答数量合計が、注残数を超えています =2"},
        {[](EditedFile &file) { file.Cell(1, "枝番") = "2"; },
         "2:「出力時」の列が、ほかの明細のものです =2"},
        {[](EditedFile &file) { file.Cell(1, "受注№") = "=\"0001\""; }, "=3"},
        {[](EditedFile &file) { file.Cell(1, "受注№") = "1.5"; },
         "2:受注№・枝番・分納番号が数字ではありません =2"},
        {[](EditedFile &file) { file.Cell(1, "受注№") = QString::fromLatin1("1\0", 2); },
         "CSV ファイルではありません"},
        {[](EditedFile &file) { file.Cell(1, "注文№") = "=\"PO-2\""; },
         "2:注文№が明細と違います =2"},
        {[](EditedFile &file) { file.rows[0] += "x"; }, "2:見出しより列が多くあります =2"},
        {[](EditedFile &file) { file.rows[0].resize(14); }, "=3"},
        {[](EditedFile &file) { file.rows[1][8] = "\"SUS"; }, "3:" + broken + " =2"},
        {[](EditedFile &file) {
             file.rows[1][8] = "\"SUS\r\nx\"";
             file.Cell(3, Date) = "x";
         },
         "5:日付ではありません[x] =2"},
        {[](EditedFile &file) { file.rows.push_back(QStringList(file.headings.size(), "")); },
         "=3"},
        // Splits: a copied row without its number, or with a new one.
        {[](EditedFile &file) {
             file.Cell(1, Quantity) = "70";
             file.Copy(1, {{ShpSubNo, ""}, {Quantity, "30"}, {Date, "261208"}});
         },
         "2:100/=>70/ 5:+30/20261208@1 =2"},
        {[](EditedFile &file) {
             file.Copy(2, {{ShpSubNo, "7"}, {Quantity, "10"}});
         },
         "5:+10/@2 =3"},
        {[](EditedFile &file) {
             file.Copy(2, {{ShpSubNo, "2"}, {Quantity, "10"}});
         },
         "5:「出力時」の列が、ほかの明細のものです =3"},
        {[](EditedFile &file) {
             file.Copy(2, {{ShpSubNo, ""}, {"出力時", ""}, {Quantity, "10"}});
             std::swap(file.rows[3], file.rows[2]);
         },
         "4:+10/@2 =3"},
        {[](EditedFile &file) {
             file.Copy(1, {{ShpSubNo, ""}, {Quantity, ""}});
         },
         "5:分納の数量がありません =3"},
        {[](EditedFile &file) {
             file.Copy(1, {{ShpSubNo, ""}, {Date, "x"}});
         },
         "5:日付ではありません[x] =3"},
        {[](EditedFile &file) {
             file.Cell(2, Date) = "2026/12/8";
             file.Cell(3, Quantity) = "50";
             file.Copy(2, {{ShpSubNo, ""}, {Quantity, "30"}});
         },
         "3:回答数量合計が、注残数を超えています 4:回答数量合計が、注残数を超えています "
         "5:回答数量合計が、注残数を超えています =1"},
        {[](EditedFile &file) {
             file.Copy(1, {{Quantity, "30"}});
         },
         "2:同じ明細の行がほかにもあります 5:同じ明細の行がほかにもあります =2"},
        {[](EditedFile &file) {
             file.Cell(1, "受注№") = "77";
             file.Cell(1, "出力時") = "77-1-1 未 0 - 100 -";
             file.Copy(1, {{ShpSubNo, ""}});
         },
         "2:この一覧にない明細です 5:この一覧にない明細です =2"},
        // Columns moved or left out.
        {[](EditedFile &file) {
             for (QStringList *row : {&file.headings, &file.rows[0], &file.rows[1], &file.rows[2]})
                 std::reverse(row->begin(), row->end());
             file.Cell(2, Date) = "20261208";
         },
         "3:60/=>60/20261208 =2"},
        {[](EditedFile &file) {
             file.Drop(Quantity);
             file.Drop("注文№");
             file.Drop("出力時");
             file.Cell(3, Date) = "20261208";
         },
         "4:40/20260520=>40/20261208 =2"},
        {[](EditedFile &file) { file.Drop(ShpSubNo); },
         "受注№・枝番・分納番号の見出しがありません"},
        {[](EditedFile &file) {
             file.Drop(Quantity);
             file.Drop(Date);
         },
         "回答数量・回答納期の見出しがありません"},
        {[](EditedFile &file) {
             file.headings[0] = "出荷";
             file.headings[1] = Date;
         },
         "受注№・枝番・分納番号の見出しがありません"},
        {[](EditedFile &file) { file.headings[4] = Date; }, "同じ見出しの列が２つあります"},
    };
    for (const auto &[edit, plan] : cases) {
        EditedFile file = File();
        edit(file);
        EXPECT_EQ(Planned(file), plan) << file.Text().toStdString();
    }
}

TEST_F(SheetPlanTest, AnOlderFileNeverOverridesWhatWasDoneSince)
{
    const EditedFile untouched = File();
    EditedFile edited = untouched;
    edited.Cell(1, Date) = "20261208";
    const struct
    {
        const char *since;
        const char *refusal;
    } cases[] = {
        {"AnsLimUmu = 3, AnsVal = 100", "2:出力した後に、納期回答済になっています =2"},
        {"AnsLimUmu = 0, AnsVal = 90", "2:出力した後に、回答が登録されています =2"},
        {"AnsVal = 0, AnsLimDate = '20260601'", "2:出力した後に、回答が登録されています =2"},
        {"AnsLimDate = '', ShpSts = 3", "2:出荷済です =2"},
    };
    for (const auto &[since, refusal] : cases) {
        Answer(since);
        EXPECT_EQ(Planned(edited), refusal);
        EXPECT_EQ(Planned(untouched), "=3") << "nothing was edited";
    }
    // One that knows of the answer may change it.
    Answer("ShpSts = 1, AnsLimUmu = 3, AnsVal = 100, AnsLimDate = '20260601'");
    EditedFile fresh = File();
    fresh.Cell(1, Date) = "20261208";
    const QString taken = "2:100/20260601=>100/20261208 =2";
    EXPECT_EQ(Planned(fresh), taken);
    // Without the column that tells, only the mark of an answered line does.
    fresh.Drop("出力時");
    EXPECT_EQ(Planned(fresh), taken);
    fresh.Cell(1, "回答") = "";
    EXPECT_EQ(Planned(fresh), "2:出力した後に、納期回答済になっています =2");
    fresh.Drop("回答");
    EXPECT_EQ(Planned(fresh), "2:納期回答済です（出力時の列がないので変更できません） =2");
}

TEST_F(SheetPlanTest, AFileThatIsTakenOnceMoreSplitsNothingAgain)
{
    EditedFile file = File();
    file.Cell(1, Quantity) = "40";
    file.Copy(1, {{ShpSubNo, ""}, {Quantity, "30"}});
    file.Copy(1, {{ShpSubNo, "7"}, {Quantity, "30"}});
    EXPECT_EQ(Planned(file), "2:100/=>40/ 5:+30/@1 6:+30/@1 =2");
    const std::pair<const char *, QString> cases[]
        = {{"AnsVal = 40", "出力した後に、回答が登録されています"},
           {"AnsVal = 40, AnsLimUmu = 3", "出力した後に、納期回答済になっています"}};
    for (const auto &[since, refusal] : cases) {
        Answer(since);
        EXPECT_EQ(Planned(file), "5:" + refusal + " 6:" + refusal + " =3");
    }
    // A row that was typed and not copied knows of no line; one that knows of the answer is meant.
    EditedFile typed = file;
    typed.Cell(4, "出力時") = typed.Cell(5, "出力時") = "";
    EXPECT_EQ(Planned(typed), "5:+30/@1 6:+30/@1 =3");
    EditedFile fresh = File();
    fresh.Copy(1, {{ShpSubNo, ""}, {Quantity, "30"}});
    EXPECT_EQ(Planned(fresh), "5:+30/@1 =3");
    // Without the column that tells, as for a line itself.
    file.Drop("出力時");
    EXPECT_EQ(Planned(file), "5:" + cases[1].second + " 6:" + cases[1].second + " =3");
}

TEST_F(SheetPlanTest, WhatTheListHasGotMeanwhileStays)
{
    list.InsertBelow({{1, list.At(1).Split(10)}});
    const EditedFile written = File();
    list.At(1).SetQuantity(80);
    list.At(3).SetDate("20261201");
    EXPECT_EQ(Planned(written), "=4");
    EditedFile edited = written;
    edited.Cell(1, Date) = "20261208";
    edited.Cell(2, Quantity) = "20";
    EXPECT_EQ(Planned(edited), "2:80/=>80/20261208 3:10/=>20/ =2")
        << "the other half of the answer stays as it was typed";
    // Another split above does not take the place of a split that was written.
    edited.Cell(2, ShpSubNo) = "9";
    EXPECT_EQ(Planned(edited), "2:80/=>80/20261208 3:10/=>20/ =2") << "it got a number in the file";
    list.Remove({2});
    EXPECT_EQ(Planned(edited),
              "2:80/=>80/20261208 3:出力した後に、登録または削除された分納です =2");
}

TEST_F(SheetPlanTest, AFileOfAnotherListIsKnownAsOne)
{
    const QByteArray file = Written();
    EXPECT_FALSE(PlanSheet(ReadSheet(file), list).isOfAnotherList);
    Change("TLSP0010", "1 = 1", "AccNo = AccNo + 10");
    AddOrder(11);
    AddOrder(12);
    Load();
    EXPECT_TRUE(PlanSheet(ReadSheet(file), list).isOfAnotherList);
    EXPECT_EQ(Planned(file), "2:この一覧にない明細です 3:この一覧にない明細です "
                             "4:この一覧にない明細です");
}

TEST_F(SheetPlanTest, EveryFormOfAFileIsTheSameFile)
{
    Change("TLAC0010", "1 = 1", "AccHinName = '抵抗器, \"A\" ～ ㈱髙', F019 = '=1+1'");
    Change("TLSP0010", "1 = 1", "OdrNo = '0012', CustSecCD = '1-2', PayNo = char(10) || '7'");
    Load();
    for (const char *date : {"=1+1 x", "a,\"b\"", "=123/45/67", "1,23/45/67"}) {
        // Whatever the database has.
        Change("TLSP0010", "AccNo = 1", QString("AnsLimDate = '%1'").arg(date));
        Load();
        EXPECT_EQ(Planned(Written()), "=3") << date;
        EXPECT_FALSE(Written().contains(",=")) << date;
    }
    EXPECT_EQ(Planned(Written(CsvEncoding::ShiftJis)), "=3");
    EXPECT_EQ(Planned(Written().mid(3)), "=3") << "without the mark";
    EXPECT_EQ(Planned(QByteArray("PK\3\4 and more")),
              "ブックのままでは読めません。表計算ソフトで CSV 形式で保存してください");
    EXPECT_EQ(Planned(QByteArray()), "受注№・枝番・分納番号の見出しがありません");
    Change("TLAC0010", "1 = 1", "AccHinName = '배송 ⓕ'");
    Load();
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    CsvWriter writer(out, CsvEncoding::ShiftJis);
    EXPECT_TRUE(writer.Write(list, AllRows(), [] { return true; }));
    EXPECT_TRUE(writer.HasLostCharacters());
}

TEST_F(SheetPlanTest, HostileFilesAreReadInASecond)
{
    QByteArray many = "受注№,枝番,分納番号,回答数量\n";
    for (int row = 0; row < 200'000; ++row)
        many += QByteArray::number(row) + ",1,1," + QByteArray::number(row % 7) + '\n';
    QByteArray open = Written() + "\"" + many;
    QByteArray wide = Written() + QByteArray(5'000'000, ',');
    QByteArray quotes = Written() + QByteArray(5'000'001, '"');
    QElapsedTimer timer;
    timer.start();
    const SheetPlan plan = PlanSheet(ReadSheet(many), list);
    EXPECT_EQ(plan.refused.size(), 199'998u);
    EXPECT_EQ(PlanSheet(ReadSheet(open), list).refused.size(), 200'003u);
    EXPECT_EQ(Planned(wide), "=3");
    EXPECT_EQ(PlanSheet(ReadSheet(quotes), list).refused.size(), 1u);
#ifdef NDEBUG
    EXPECT_LT(timer.elapsed(), 10'000);
#endif
}

TEST_F(SheetPlanTest, IsTakenAndTakenBackInOne)
{
    EditedFile file = File();
    file.Cell(1, Quantity) = "50";
    file.Copy(1, {{ShpSubNo, ""}, {Quantity, "30"}, {Date, "20261208"}});
    file.Copy(1, {{ShpSubNo, ""}, {Quantity, "20"}});
    file.Cell(3, Date) = "20261209";
    file.Cell(2, Date) = "x";
    const auto answers = [&] {
        QStringList texts;
        for (int row = 1; row <= list.Count(); ++row)
            texts += list.At(row).Now().quantity.ToText() + '/' + list.At(row).Now().date;
        return texts.join(' ');
    };
    const QString before = answers();
    LineEdits edits(list);
    const RowSelection taken = TakeSheet(PlanSheet(ReadSheet(file.Text().toUtf8()), list), edits);
    EXPECT_EQ(answers(), "50/ 30/20261208 20/ 60/ 40/20261209");
    EXPECT_EQ(taken.Ranges(), (std::vector<RowSelection::Range>{{1, 3}, {5, 5}}));
    EXPECT_TRUE(list.At(2).HasDateMark());
    EXPECT_EQ(Planned(Written()), "=5") << "the file of what was taken is the list";
    edits.TakeBack();
    EXPECT_EQ(answers(), before);
    EXPECT_EQ(list.UnregisteredCount(), 0);
}
