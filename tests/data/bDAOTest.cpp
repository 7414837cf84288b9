#include "data/bDAO.h"

#include "data/ErrorOf.h"
#include "data/Tables.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <gtest/gtest.h>

namespace {

class bDAOTest : public testing::Test
{
protected:
    void SetUp() override
    {
        file.Insert("TLMT0020", {{"AccHinCD", "A"}, {"HinName", "  名 前  "}, {"ReadTime", 5}});
        file.Insert("TLMT0020", {{"AccHinCD", "B"}, {"HinName", QVariant()}});
        file.Open(db);
    }

    ScriptedBoxes boxes;
    TestDatabase file;
    bDAO db;
};

} // namespace

TEST(bDAO, TextsInStatements)
{
    EXPECT_EQ(SqlText("  O'N'EIL  "), "  O''N''EIL");
    EXPECT_EQ(SqlText("A　"), "A　");
    EXPECT_EQ(LikeText("1##*?[x]' "), "1[#][#]*?[x]' ");
}

TEST_F(bDAOTest, ADeleteOfNothingIsFine)
{
    EXPECT_TRUE(db.DBExecute("delete from TLMT0020 WHERE AccHinCD = 'Z'"));
    EXPECT_TRUE(boxes.Shown().empty());
    EXPECT_FALSE(db.DBExecute("INSERT INTO TLMT0020 SELECT * FROM TLMT0020 WHERE AccHinCD = 'Z'"));
    EXPECT_EQ(boxes.Shown().size(), 2u);
}

TEST_F(bDAOTest, AnErrorOfTheEngineIsShown)
{
    EXPECT_FALSE(db.DBExecute("DELETE FROM [%1%2]"));
    ASSERT_EQ(boxes.Shown().size(), 1u);
    const MessageBoxRequest box = boxes.Shown()[0];
    EXPECT_EQ(box.title, "ﾃﾞｰﾀﾍﾞｰｽｱｸｾｽｴﾗｰ");
    EXPECT_EQ(box.style, 4112);
    EXPECT_TRUE(box.text.startsWith("ｴﾗｰｺｰﾄﾞ：3075\r\nｴﾗｰ内容：SQL ")) << box.text.toStdString();
    EXPECT_TRUE(box.text.contains("%1%2")) << "per cent signs are text";
    EXPECT_TRUE(box.text.endsWith("\r\nｴﾗｰｿｰｽ ：DAO.Database")) << box.text.toStdString();

    db.ShowDBErrors();
    EXPECT_EQ(boxes.Shown().size(), 1u) << "an error is shown once";
}

TEST_F(bDAOTest, WhetherThereIsATable)
{
    EXPECT_TRUE(db.HasTable("tlmt0020"));
    EXPECT_FALSE(db.HasTable("TLMT0021"));
    EXPECT_TRUE(boxes.Shown().empty());
    EXPECT_EQ(db.TryOpenRS("SELECT * FROM TLMT0020")->RecordCount(), 2);

    // Whatever can't be read now.
    SetLockTimeout(db, file, 1);
    file.Run(file.IsOnServer() ? "BEGIN; LOCK TABLE TLMT0020" : "BEGIN EXCLUSIVE");
    EXPECT_EQ(db.TryOpenRS("SELECT * FROM TLMT0020"), nullptr);
    EXPECT_TRUE(boxes.Shown().empty());
    EXPECT_TRUE(db.HasTable("TLMT0020"));
    EXPECT_EQ(boxes.Shown().size(), 1u);
}

TEST_F(bDAOTest, EachFailureIsShownOnce)
{
    bDAO closed;
    const auto rows = db.OpenRS("SELECT * FROM TLMT0020 WHERE AccHinCD = 'A'");
    ASSERT_TRUE(rows);
    EXPECT_FALSE(db.CommitTrans());
    EXPECT_FALSE(db.Rollback());
    EXPECT_EQ(db.NullToZero(*rows, u"Missing"), 0);
    EXPECT_TRUE(db.FieldsOf(*rows, {"HinName", "Missing", "None"}).empty());
    EXPECT_TRUE(db.MoveNext(*rows));
    EXPECT_FALSE(db.MoveNext(*rows));
    EXPECT_EQ(closed.OpenRS("SELECT 1"), nullptr);
    EXPECT_FALSE(closed.DBExecute("DELETE FROM T"));
    EXPECT_EQ(boxes.Shown().size(), 7u);
}

class TransactionBoxesTest : public bDAOTest
{
protected:
    TransactionBoxesTest()
    {
        SetLockTimeout(file.Other(), 0);
        SetMsgBoxHandler([this](const MessageBoxRequest &box) {
            shown += box.text.section("\r\n", 0, 0);
            EXPECT_FALSE(db.IsInTransaction());
            EXPECT_EQ(ErrorOf([this] {
                          file.Lock();
                          file.Unlock();
                      }).number,
                      0)
                << "the file is locked while this box waits: " << box.text.toStdString();
            return BoxButton::Ok;
        });
    }

    void MakeErrors()
    {
        EXPECT_FALSE(db.DBExecute(noRow));
        const auto rows = db.OpenRS("SELECT * FROM TLMT0020");
        ASSERT_TRUE(rows);
        EXPECT_EQ(db.NullToTrim(*rows, u"Missing"), "");
        EXPECT_FALSE(db.BeginTrans()) << "there is one already";
        EXPECT_FALSE(db.DBExecute("DELETE FROM None"));
        EXPECT_EQ(db.OpenRS("SELEKT"), nullptr);
        EXPECT_EQ(shown, QStringList()) << "no box in a transaction";
    }

    const QString noRow = "UPDATE TLMT0020 SET HinName = 'A|B' WHERE AccHinCD = 'Z';";
    const QStringList errors = {"不明なｴﾗｰによりﾃﾞｰﾀﾍﾞｰｽへの更新はｷｬﾝｾﾙされました。",
                                "UPDATE TLMT0020 SET HinName = 'A' & Chr(124) & 'B'"
                                " WHERE AccHinCD = 'Z';",
                                "ｴﾗｰｺｰﾄﾞ：3265",
                                "ｴﾗｰｺｰﾄﾞ：3075",
                                "ｴﾗｰｺｰﾄﾞ：3075",
                                file.IsOnServer() ? "ｴﾗｰｺｰﾄﾞ：3000" // nothing works after an error
                                                  : "ｴﾗｰｺｰﾄﾞ：3075"};
    QStringList shown;
};

TEST_F(TransactionBoxesTest, AreShownInOrderWhenItHasEnded)
{
    constexpr bool (bDAO::*ends[])() = {&bDAO::Rollback, &bDAO::CommitTrans, &bDAO::CloseDB};
    for (const auto &end : ends) {
        if (file.IsOnServer() && end == &bDAO::CommitTrans)
            continue; // fails there
        shown.clear();
        ASSERT_TRUE(db.BeginTrans());
        EXPECT_TRUE(db.IsInTransaction());
        MakeErrors();
        EXPECT_TRUE((db.*end)());
        EXPECT_FALSE(db.IsInTransaction());
        EXPECT_EQ(shown, errors);
    }
}

TEST_F(TransactionBoxesTest, ACommitThatFailsKeepsThemUntilTheRollback)
{
    SetLockTimeout(db, file, 50);
    ASSERT_TRUE(db.BeginTrans());
    EXPECT_FALSE(db.DBExecute(noRow));
    EXPECT_TRUE(db.DBExecute("DELETE FROM TLMT0020"));
    file.Run("BEGIN; SELECT count(*) FROM TLMT0020"); // a reader holds the commit up
    if (file.IsOnServer()) {                          // but not there
        EXPECT_FALSE(db.DBExecute("DELETE FROM None"));
    }
    EXPECT_FALSE(db.CommitTrans());
    file.Run("COMMIT");
    EXPECT_TRUE(db.IsInTransaction());
    EXPECT_EQ(shown, QStringList());
    EXPECT_TRUE(db.Rollback());
    QStringList expected = errors.first(2);
    expected += file.IsOnServer() ? QStringList{"ｴﾗｰｺｰﾄﾞ：3075", "ｴﾗｰｺｰﾄﾞ：3000"}
                                  : QStringList{"ｴﾗｰｺｰﾄﾞ：3260"};
    EXPECT_EQ(shown, expected);
    EXPECT_EQ(file.Rows("SELECT AccHinCD FROM TLMT0020"), "A B");
}

TEST_F(bDAOTest, RowsOneAfterTheOther)
{
    const auto rows = db.OpenRS("SELECT * FROM TLMT0020 ORDER BY AccHinCD");
    ASSERT_TRUE(rows);
    EXPECT_EQ(db.NullToTrim(*rows, u"HINNAME"), "名 前");
    EXPECT_EQ(db.NullToRTrim(*rows, u"HINNAME"), "  名 前");
    EXPECT_EQ(db.NullToZero(*rows, u"ReadTime"), 5);
    EXPECT_TRUE(db.MoveNext(*rows));
    EXPECT_EQ(db.NullToTrim(*rows, u"HinName"), "");
    EXPECT_EQ(db.GetRecordCount(rows.get()), 2);
    EXPECT_EQ(db.NullToTrim(*rows, u"AccHinCD"), "A") << "counting goes back to the first row";
    EXPECT_TRUE(db.MoveLast(*rows) && db.MoveNext(*rows));
    EXPECT_EQ(db.GetRecordCount(rows.get()), 0) << "at the end there is nothing to count";
    EXPECT_EQ(db.GetRecordCount(nullptr), -1);
}

TEST_F(bDAOTest, OpensAndCloses)
{
    EXPECT_FALSE(db.OpenDB(file.folder.OnDriveC(), "C:\\NONE.MDB", false, ConnectText));
    EXPECT_FALSE(db.IsOpen());
    EXPECT_EQ(db.OpenRS("SELECT 1 AS N"), nullptr) << "what was open before is not any more";
    EXPECT_TRUE(db.OpenDB(file.folder.OnDriveC(), "c:\\tldb0010.mdb", true, ConnectText));
    EXPECT_TRUE(db.IsOpen());
    EXPECT_FALSE(db.DBExecute("DELETE FROM TLMT0020")) << "opened for reading only";
    EXPECT_EQ(boxes.Shown().size(), 3u);
    EXPECT_TRUE(db.CloseDB() && db.CloseDB()) << "a second close does nothing";
    EXPECT_FALSE(db.IsOpen());
}

TEST_F(bDAOTest, OldDatabasesAreRefused)
{
    constexpr std::pair<const char *, bool> cases[] = {
        {"08.50", true}, {"8", true}, {"10.1", true}, {"7.999", false}, {"", false}, {"V8", false},
    };
    for (const auto &[version, isAccepted] : cases) {
        file.Other().SetProperty("AccessVersion", version);
        EXPECT_EQ(db.CheckAccessVersion(), isAccepted) << version;
        EXPECT_EQ(boxes.TakeTexts().size(), isAccepted ? 0u : 1u);
    }
    file.Run("DELETE FROM DBProperty WHERE Name = 'AccessVersion'");
    EXPECT_FALSE(db.CheckAccessVersion());
    EXPECT_EQ(boxes.TakeTexts().size(), 1u);
}
