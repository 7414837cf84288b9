#pragma once

#include "answerlist/ListColumns.h"
#include "data/ProgramState.h"
#include "lines/LineEdits.h"
#include "lines/ListLoading.h"
#include "lines/RowSelection.h"
#include "support/FixedClock.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <QStringList>
#include <gtest/gtest.h>

/// A database with one customer, and the program's state over it.
class ListDatabase : public testing::Test
{
protected:
    ListDatabase()
    {
        file.Insert("TLMT0040", {{"CustCD", "C1"}, {"LinKBN", 2}, {"NokiInfKBN", 1}});
        Change("TLMT0040", "1 = 1",
               "CustName = '青葉電機', VanCD = 'VAN001999999', NokiInfPath = 'C:\\OUT\\C1.TXT',"
               "HenpVerPath = '10SIDE'");
        file.Insert("TLMT0050", {{"CustCoCD", "VAN001"}, {"PayDstCD", "D1"}, {"PayNeedDays", 3}});
        file.Insert("TLMT0020", {{"AccHinCD", "HIN-1"}, {"ReadTime", 7}});
        file.Open(state.db);
        state.files = file.folder.OnDriveC();
        state.isReloadNeeded = true;
        state.conditions.sortKeys = {"ACCNO", "ACCSUBNO", "SHPSUBNO", "ODRNO", "", ""};
    }

    /// An order of 100 pieces, all open. `changes` is what an UPDATE sets.
    void AddOrder(int accNo, const QString &changes = {})
    {
        file.Insert("TLAC0010", {{"AccNo", accNo}});
        Change(
            "TLAC0010", QString("AccNo = %1").arg(accNo),
            "CustCD = 'C1', AccHinCD = 'HIN-1', AccHinName = '抵抗器', ZanVal = 100, F019 = 'SUS',"
            "ShpSts = 1",
            changes);
    }

    /// A line as received: all 100 pieces wanted on 20 May, no answer yet.
    void AddLine(int accNo, int accSubNo, int shpSubNo, const QString &changes = {})
    {
        file.Insert("TLSP0010", {{"AccNo", accNo}, {"AccSubNo", accSubNo}, {"ShpSubNo", shpSubNo}});
        Change("TLSP0010",
               QString("AccNo = %1 AND AccSubNo = %2 AND ShpSubNo = %3")
                   .arg(accNo)
                   .arg(accSubNo)
                   .arg(shpSubNo),
               "OdrNo = 'PO-' || AccNo, CustCD = 'C1', CustSecCD = 'SEC', PayDstCD = 'D1',"
               "LimDate = '20260520', PayNo = 'P1', HinCD = 'OWN-1', AccHinCD = 'HIN-1',"
               "AccVal = 100, IndVal = 100, ShpSts = 1, DenKBN = 2, ContractKBN = 'A'",
               changes);
    }

    /// An answer in the history of a line, the `number`-th: 2 pieces more each time.
    void AddAnswer(int accNo, int accSubNo, int shpSubNo, int number, const QString &changes = {})
    {
        file.Insert("TLAH0010", {{"AccNo", accNo},
                                 {"AccSubNo", accSubNo},
                                 {"ShpSubNo", shpSubNo},
                                 {"AnsNo", number},
                                 {"AnsVal", 2 * number}});
        Change("TLAH0010",
               QString("AccNo = %1 AND AccSubNo = %2 AND ShpSubNo = %3 AND AnsNo = %4")
                   .arg(accNo)
                   .arg(accSubNo)
                   .arg(shpSubNo)
                   .arg(number),
               "LimDate = '20260520', AnsLimDate = '20260528', AnsMark = '2', AnsKBN = CAST(AnsNo "
               "AS TEXT),"
               "RecNo = '00007', RecPath = 'C:\\OUT\\C1.TXT', UserName = 'tanaka',"
               "MachineName = 'desk1', UpdDate = '20260501', UpdTime = '090807'",
               changes);
    }

    QString Stored(const QString &columns, const QString &where = "1 = 1")
    {
        return file.Rows("SELECT " + columns + " FROM TLSP0010 WHERE " + where
                         + " ORDER BY AccNo, AccSubNo, ShpSubNo");
    }

    /// `more` has the last word.
    void Change(const QString &table, const QString &where, const QString &changes,
                const QString &more = {})
    {
        for (const QString &part : {changes, more})
            if (!part.isEmpty())
                file.Run("UPDATE " + table + " SET " + part + " WHERE " + where);
    }

    /// Another program's lock for writing, which this program gives up on at once.
    void LockDatabase()
    {
        SetLockTimeout(state.db, file, 1);
        file.Lock();
        isLocked = true;
    }
    void UnlockDatabase()
    {
        file.Unlock();
        isLocked = false;
    }

    const FixedClock clock{QDateTime(QDate(2026, 5, 1), QTime(9, 8, 7))};
    TestDatabase file;
    ProgramState state;
    bool isLocked = false;
};

/// The list's columns.
enum Column {
    Marks = 1,
    Order,
    OrderQuantities,
    LineQuantities,
    AnswerQuantity,
    AnswerDate,
    SpecifiedDate,
    States,
    Contract
};

/// What the list shows in a cell, its lines separated by "/".
inline QString CellText(const Line &line, int column)
{
    return ListColumns()[size_t(column - 1)].text(line).replace("\r\n", "/");
}

/// What the list shows of a line, its cells separated by "|".
inline QString RowText(const Line &line)
{
    QStringList cells;
    for (int column = Marks; column <= Contract; ++column)
        cells += CellText(line, column);
    return cells.join('|');
}

inline RowSelection Rows(const std::vector<int> &rows)
{
    std::vector<RowSelection::Range> ranges;
    for (const int row : rows)
        ranges.emplace_back(row, row);
    return RowSelection(std::move(ranges));
}

/// The lines of that database in the order of their keys, without a window. While a box waits for
/// the operator, others can write to the database.
class LinesFixture : public ListDatabase
{
protected:
    LinesFixture()
    {
        SetLockTimeout(file.Other(), 0);
        boxes.OnBox([this](const MessageBoxRequest &box) {
            if (!isLocked) {
                EXPECT_NO_THROW(file.Lock(); file.Unlock()) << box.text.toStdString();
            }
        });
    }

    void Load() { ASSERT_GT(LoadList(state.db, state.conditions, list).lineCount, 0); }

    /// A list of one order with one line.
    void LoadLine(const QString &changes = {}, const QString &orderChanges = {})
    {
        file.Run("DELETE FROM TLSP0010; DELETE FROM TLAC0010");
        AddOrder(1, orderChanges);
        AddLine(1, 1, 1, changes);
        Load();
    }

    QString Cell(int row, int column) const { return CellText(list.At(row), column); }

    ScriptedBoxes boxes;
    LineList list;
    LineEdits edits{list};
};
