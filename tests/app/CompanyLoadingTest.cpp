#include "app/CompanyLoading.h"

#include "support/Machine.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

namespace {

class CompanyLoadingTest : public testing::Test
{
protected:
    bool Load(const QString &executable = "TL030101")
    {
        if (!db.IsOpen())
            file.Open(db);
        company.CoName = "left over";
        company.TaxPer = 99;
        return LoadCompany(db, executable, company);
    }

    ScriptedBoxes boxes;
    const Machine machine;
    TestDatabase file;
    bDAO db;
    CompanyRecord company;
};

} // namespace

TEST_F(CompanyLoadingTest, TextsHaveTheirWidthsAndWhatCannotBeReadIsBlank)
{
    file.Insert("TLMT0010", {{"CoCD", "CO"},
                             {"CoName", QString(25, u'名')},
                             {"TEL", QVariant()},
                             {"CloseDay", 20},
                             {"PayMonthKBN", QVariant()},
                             {"DpoYM", 40000}, // too large for its field
                             {"SaveBackNo", 32767},
                             {"TaxPer", "abc"},
                             {"PayDenNo", 4000000000.0},
                             {"UpdTime", "093000"}});
    file.Insert("TLMT0010", {{"CoCD", "SECOND"}});
    file.Run("ALTER TABLE TLMT0010 DROP COLUMN Address");
    EXPECT_TRUE(Load());
    EXPECT_EQ(company.CoCD, "CO          ");
    EXPECT_EQ(company.CoName, QString(20, u'名'));
    EXPECT_EQ(company.TEL + company.Address, QString(112, ' '));
    EXPECT_EQ(company.PayMonthKBN + company.DpoYM + company.TaxPer, 0);
    EXPECT_EQ(company.SaveBackNo, 32767);
    EXPECT_EQ(company.PayDenNo, 4e9);
    EXPECT_EQ(company.UpdTime, "20    ") << "the closing day, not the time";
    EXPECT_TRUE(boxes.Shown().empty());
}

TEST_F(CompanyLoadingTest, WithoutARowOnlyTheCompanyMaintenanceGoesOn)
{
    EXPECT_FALSE(Load("TL030101"));
    EXPECT_EQ(company.CoName, QString(20, ' '));
    EXPECT_EQ(company.TaxPer, 0);
    EXPECT_TRUE(Load("TL040101"));
    EXPECT_EQ(company.SaveDir, QString(128, ' ')) << "nothing in the registry";
    machine.windows.Write("REGISTRY.INI", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\NEROVA\\QUILLAN]\r\n"
                                          "AppFolder=C:\\QUILLAN\r\n");
    EXPECT_TRUE(Load("tl040101"));
    EXPECT_EQ(company.SaveDir, "C:\\QUILLAN" + QString(118, ' '));
    file.Run("DROP TABLE TLMT0010");
    EXPECT_FALSE(Load());
    EXPECT_EQ(boxes.TakeTexts().size(), 1u);
}
