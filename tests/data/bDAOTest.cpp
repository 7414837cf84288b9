#include "data/bDAO.h"

#include "data/ErrorOf.h"
#include "data/Tables.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <functional>
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
    EXPECT_EQ(SqlQuoted(" O'N''EIL| "), "' O''N''''EIL| '");
    EXPECT_EQ(SqlText("  O'N'EIL  "), "  O''N''EIL");
    EXPECT_EQ(SqlText("A　"), "A　");
    EXPECT_EQ(LikeText("1##*?[x]' "), "1[#][#]*?[x]' ");
}

TEST_F(bDAOTest, AnUpdateThatChangesNothingIsShownWithItsStatement)
{
    const QString sql = "UPDATE TLMT0020 SET HinName = 'A|B' WHERE AccHinCD = 'Z';";
    EXPECT_FALSE(db.DBExecute(sql));
    ASSERT_EQ(boxes.Shown().size(), 2u);
    const auto &[text, style, title] = boxes.Shown()[0];
    EXPECT_EQ(text, "不明なｴﾗｰによりﾃﾞｰﾀﾍﾞｰｽへの更新はｷｬﾝｾﾙされました。");
    EXPECT_EQ(style, 16);
    EXPECT_EQ(title, "DBExecute Routine");
    const auto &cause = boxes.Shown()[1];
    EXPECT_EQ(cause.text,
              "UPDATE TLMT0020 SET HinName = 'A' & Chr(124) & 'B' WHERE AccHinCD = 'Z';");
    EXPECT_EQ(cause.style, 0);
    EXPECT_EQ(cause.title, "不明なｴﾗｰの原因...");
}

TEST_F(bDAOTest, ADeleteOfNothingIsFine)
{
    EXPECT_TRUE(db.DBExecute("DELETE FROM TLMT0020 WHERE AccHinCD = 'Z'"));
    EXPECT_TRUE(db.DBExecute("delete from TLMT0020 WHERE AccHinCD = 'Z'"));
    EXPECT_TRUE(boxes.Shown().empty());
    EXPECT_FALSE(db.DBExecute("INSERT INTO TLMT0020 SELECT * FROM TLMT0020 WHERE AccHinCD = 'Z'"));
    EXPECT_EQ(boxes.Shown().size(), 2u);
}

TEST_F(bDAOTest, PipesArriveAsTheyWereTyped)
{
    EXPECT_TRUE(db.DBExecute("UPDATE TLMT0020 SET HinName = '|a||b|' WHERE AccHinCD = 'A'"));
    EXPECT_EQ(file.Rows("SELECT HinName FROM TLMT0020 WHERE AccHinCD = 'A'"), "|a||b|");
    const auto rows = db.OpenRS("SELECT AccHinCD FROM TLMT0020 WHERE HinName = '|a||b|'");
    EXPECT_EQ(db.GetRecordCount(rows.get()), 1);
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(bDAOTest, AnErrorOfTheEngineIsShown)
{
    EXPECT_FALSE(db.DBExecute("DELETE FROM [%1%2]"));
    ASSERT_EQ(boxes.Shown().size(), 1u);
    const MessageBoxRequest box = boxes.Shown()[0];
    EXPECT_EQ(box.title, "ﾃﾞｰﾀﾍﾞｰｽｱｸｾｽｴﾗｰ");
    EXPECT_EQ(box.style, 4112);
    const QStringList lines = box.text.split("\r\n");
    ASSERT_EQ(lines.size(), 3) << box.text.toStdString();
    EXPECT_EQ(lines[0], "ｴﾗｰｺｰﾄﾞ：3075");
    EXPECT_TRUE(lines[1].startsWith("ｴﾗｰ内容：SQL ")) << lines[1].toStdString();
    EXPECT_TRUE(lines[1].contains("%1%2")) << "per cent signs are text";
    EXPECT_EQ(lines[2], "ｴﾗｰｿｰｽ ：DAO.Database");

    db.ShowDBErrors();
    EXPECT_EQ(boxes.Shown().size(), 1u) << "an error is shown once";
}

TEST_F(bDAOTest, EachFailureHasItsValue)
{
    const auto closed = std::make_unique<bDAO>();
    const auto rows = db.OpenRS("SELECT * FROM TLMT0020 WHERE AccHinCD = 'A'");
    ASSERT_TRUE(rows);
    const struct
    {
        const char *what;
        std::function<bool()> isFailure;
        size_t boxes;
    } cases[] = {
        {"OpenRS", [&] { return db.OpenRS("SELECT") == nullptr; }, 1},
        {"CommitTrans", [&] { return !db.CommitTrans(); }, 1},
        {"Rollback", [&] { return !db.Rollback(); }, 1},
        {"unknown column", [&] { return db.NullToTrim(*rows, u"Missing").isEmpty(); }, 1},
        {"unknown number", [&] { return db.NullToZero(*rows, u"Missing") == 0; }, 1},
        {"unknown columns",
         [&] {
             return db.FieldsOf(*rows, {"HinName", "Missing", "None"}).empty();
         },
         1},
        {"MoveNext", [&] { return db.MoveNext(*rows) && !db.MoveNext(*rows); }, 1},
        {"no rows: GetRecordCount", [&] { return db.GetRecordCount(nullptr) == -1; }, 0},
        {"not open: OpenRS", [&] { return closed->OpenRS("SELECT 1") == nullptr; }, 1},
        {"not open: DBExecute", [&] { return !closed->DBExecute("DELETE FROM T"); }, 1},
        {"not open: CheckAccessVersion", [&] { return !closed->CheckAccessVersion(); }, 2},
    };
    for (const auto &[what, isFailure, count] : cases) {
        EXPECT_TRUE(isFailure()) << what;
        EXPECT_EQ(boxes.TakeTexts().size(), count) << what;
    }
    EXPECT_TRUE(closed->CloseDB());
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
            EXPECT_EQ(ErrorOf([this] { file.Run("BEGIN IMMEDIATE; ROLLBACK"); }).number, 0)
                << "the file is locked while this box waits: " << box.text.toStdString();
            return BoxButton::Ok;
        });
    }

    void MakeErrors()
    {
        EXPECT_FALSE(db.DBExecute("DELETE FROM None"));
        EXPECT_EQ(db.OpenRS("SELEKT"), nullptr);
        EXPECT_FALSE(db.DBExecute(noRow));
        const auto rows = db.OpenRS("SELECT * FROM TLMT0020");
        ASSERT_TRUE(rows);
        EXPECT_EQ(db.NullToTrim(*rows, u"Missing"), "");
        EXPECT_FALSE(db.BeginTrans()) << "there is one already";
        EXPECT_EQ(shown, QStringList()) << "no box in a transaction";
    }

    const QString noRow = "UPDATE TLMT0020 SET HinName = 'A|B' WHERE AccHinCD = 'Z';";
    const QStringList errors = {"ｴﾗｰｺｰﾄﾞ：3075",
                                "ｴﾗｰｺｰﾄﾞ：3075",
                                "不明なｴﾗｰによりﾃﾞｰﾀﾍﾞｰｽへの更新はｷｬﾝｾﾙされました。",
                                "UPDATE TLMT0020 SET HinName = 'A' & Chr(124) & 'B'"
                                " WHERE AccHinCD = 'Z';",
                                "ｴﾗｰｺｰﾄﾞ：3265",
                                "ｴﾗｰｺｰﾄﾞ：3075"};
    QStringList shown;
};

TEST_F(TransactionBoxesTest, AreShownInOrderWhenItHasEnded)
{
    constexpr bool (bDAO::*ends[])() = {&bDAO::Rollback, &bDAO::CommitTrans, &bDAO::CloseDB};
    for (const auto &end : ends) {
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
    db.OpenRS("PRAGMA busy_timeout=50");
    ASSERT_TRUE(db.BeginTrans());
    EXPECT_FALSE(db.DBExecute(noRow));
    EXPECT_TRUE(db.DBExecute("DELETE FROM TLMT0020"));
    file.Run("BEGIN; SELECT count(*) FROM TLMT0020"); // a reader holds the commit up
    EXPECT_FALSE(db.CommitTrans());
    file.Run("COMMIT");
    EXPECT_TRUE(db.IsInTransaction());
    EXPECT_EQ(shown, QStringList());
    EXPECT_TRUE(db.Rollback());
    EXPECT_EQ(shown, QStringList({errors[2], errors[3], "ｴﾗｰｺｰﾄﾞ：3260"}));
    EXPECT_EQ(file.Rows("SELECT AccHinCD FROM TLMT0020"), "A B");
}

TEST_F(TransactionBoxesTest, AnErrorThatEndsTheTransactionItselfIsShownAfterTheRollback)
{
    file.Run("CREATE TRIGGER Kept BEFORE DELETE ON TLMT0020"
             " BEGIN SELECT RAISE(ROLLBACK, '消せない商品'); END");
    ASSERT_TRUE(db.BeginTrans());
    EXPECT_FALSE(db.DBExecute("DELETE FROM TLMT0020"));
    EXPECT_TRUE(db.IsInTransaction());
    EXPECT_EQ(shown, QStringList());
    EXPECT_TRUE(db.Rollback());
    EXPECT_EQ(shown, QStringList("ｴﾗｰｺｰﾄﾞ：3317"));
    EXPECT_FALSE(db.Rollback()) << "there is none any more";
    EXPECT_EQ(shown.size(), 2);
}

TEST_F(bDAOTest, NullsAndBlanks)
{
    const auto rows = db.OpenRS("SELECT * FROM TLMT0020 ORDER BY AccHinCD");
    ASSERT_TRUE(rows);
    EXPECT_EQ(db.NullToTrim(*rows, u"HINNAME"), "名 前");
    EXPECT_EQ(db.NullToRTrim(*rows, u"HINNAME"), "  名 前");
    EXPECT_EQ(db.NullToZero(*rows, u"ReadTime"), 5);
    EXPECT_TRUE(db.MoveNext(*rows));
    EXPECT_EQ(db.NullToTrim(*rows, u"HinName"), "");
    EXPECT_EQ(db.NullToRTrim(*rows, u"HinName"), "");
    EXPECT_EQ(db.NullToZero(*rows, u"HinName"), 0);
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(bDAOTest, CountingGoesBackToTheFirstRow)
{
    const auto rows = db.OpenRS("SELECT * FROM TLMT0020 ORDER BY AccHinCD");
    ASSERT_TRUE(rows);
    EXPECT_TRUE(db.MoveNext(*rows));
    EXPECT_EQ(db.GetRecordCount(rows.get()), 2);
    EXPECT_EQ(db.NullToTrim(*rows, u"AccHinCD"), "A");

    EXPECT_TRUE(db.MoveLast(*rows));
    EXPECT_EQ(db.NullToTrim(*rows, u"AccHinCD"), "B");
    EXPECT_TRUE(db.MoveNext(*rows));
    EXPECT_EQ(db.GetRecordCount(rows.get()), 0) << "at the end there is nothing to count";
    EXPECT_TRUE(db.IsEOF(rows.get()));
    EXPECT_TRUE(db.MoveFirst(*rows));
    EXPECT_FALSE(db.IsEOF(rows.get()));
}

TEST_F(bDAOTest, OpensAndCloses)
{
    for (const QString path : {"C:\\NONE.MDB", "\\\\nobody\\share\\TLDB0010.MDB"}) {
        EXPECT_FALSE(db.OpenDB(file.folder.OnDriveC(), path, false, ConnectText));
        EXPECT_FALSE(db.IsOpen());
        EXPECT_EQ(db.OpenRS("SELECT 1 AS N"), nullptr) << "what was open before is not any more";
        EXPECT_EQ(boxes.TakeTexts().size(), 2u);
    }
    EXPECT_TRUE(db.OpenDB(file.folder.OnDriveC(), "c:\\tldb0010.mdb", true, ConnectText));
    EXPECT_TRUE(db.IsOpen());
    EXPECT_FALSE(db.DBExecute("DELETE FROM TLMT0020")) << "opened for reading only";
    boxes.TakeTexts();
    EXPECT_TRUE(db.CloseDB());
    EXPECT_FALSE(db.IsOpen());
    EXPECT_TRUE(db.CloseDB()) << "a second close does nothing";
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(bDAOTest, OldDatabasesAreRefused)
{
    constexpr struct
    {
        const char *version; ///< null: the property is missing
        bool isAccepted;
    } cases[] = {
        {"08.50", true}, {"8.0", true},  {"8", true},      {"08.00", true},
        {"10.1", true},  {"7.9", false}, {"07.53", false}, {"7.999", false},
        {"", false},     {"V8", false},  {nullptr, false},
    };
    for (const auto &[version, isAccepted] : cases) {
        file.Run("DELETE FROM DBProperty WHERE Name = 'AccessVersion'");
        if (version)
            file.Other().SetProperty("AccessVersion", version);
        EXPECT_EQ(db.CheckAccessVersion(), isAccepted) << (version ? version : "missing");
        EXPECT_EQ(boxes.TakeTexts().size(), isAccepted ? 0u : 1u);
    }
}
