#pragma once

#include "answerlist/AnswerList.h"
#include "answerlist/ListLoading.h"
#include "data/ProgramState.h"
#include "grid/SpreadGrid.h"
#include "support/FixedClock.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <QItemSelectionModel>
#include <gtest/gtest.h>

/// A database with one customer, and the program's state over it.
class ListDatabase : public testing::Test
{
protected:
    ListDatabase()
    {
        file.Insert("TLMT0040", {{"CustCD", "C1"},
                                 {"CustName", "青葉電機"},
                                 {"VanCD", "VAN001999999"},
                                 {"LinKBN", 2},
                                 {"NokiInfKBN", 1},
                                 {"NokiInfPath", "C:\\OUT\\C1.TXT"},
                                 {"HenpVerPath", "10SIDE"}});
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
        file.Insert("TLAC0010", {{"AccNo", accNo},
                                 {"CustCD", "C1"},
                                 {"AccHinCD", "HIN-1"},
                                 {"AccHinName", "抵抗器"},
                                 {"ZanVal", 100},
                                 {"F019", "SUS"},
                                 {"ShpSts", 1}});
        Change("TLAC0010", QString("AccNo = %1").arg(accNo), changes);
    }

    /// A line as received: all 100 pieces wanted on 20 May, no answer yet.
    void AddLine(int accNo, int accSubNo, int shpSubNo, const QString &changes = {})
    {
        file.Insert("TLSP0010", {{"AccNo", accNo},
                                 {"AccSubNo", accSubNo},
                                 {"ShpSubNo", shpSubNo},
                                 {"OdrNo", QString("PO-%1").arg(accNo)},
                                 {"CustCD", "C1"},
                                 {"CustSecCD", "SEC"},
                                 {"PayDstCD", "D1"},
                                 {"LimDate", "20260520"},
                                 {"PayNo", "P1"},
                                 {"HinCD", "OWN-1"},
                                 {"AccHinCD", "HIN-1"},
                                 {"AccVal", 100},
                                 {"IndVal", 100},
                                 {"ShpSts", 1},
                                 {"DenKBN", 2},
                                 {"ContractKBN", "A"}});
        Change("TLSP0010", Where(accNo, accSubNo, shpSubNo), changes);
    }

    static QString Where(int accNo, int accSubNo, int shpSubNo)
    {
        return QString("AccNo = %1 AND AccSubNo = %2 AND ShpSubNo = %3")
            .arg(accNo)
            .arg(accSubNo)
            .arg(shpSubNo);
    }

    QString Stored(const QString &columns, const QString &where = "1")
    {
        return file.Rows("SELECT " + columns + " FROM TLSP0010 WHERE " + where
                         + " ORDER BY AccNo, AccSubNo, ShpSubNo");
    }

    void Change(const QString &table, const QString &where, const QString &changes)
    {
        if (!changes.isEmpty())
            file.Run("UPDATE " + table + " SET " + changes + " WHERE " + where);
    }

    const FixedClock clock{QDateTime(QDate(2026, 5, 1), QTime(9, 8, 7))};
    TestDatabase file;
    ProgramState state;
};

/// An answer list without a window over that database.
class ListFixture : public ListDatabase
{
protected:
    ListFixture() { list.Create(&grid); }

    void Load() { ASSERT_GT(LoadList(state.db, state.conditions, list).lineCount, 0); }

    void Select(std::initializer_list<int> rows)
    {
        grid.clearSelection();
        for (const int row : rows) {
            grid.selectionModel()->select(grid.model()->index(row - 1, 0),
                                          QItemSelectionModel::Select | QItemSelectionModel::Rows);
            list.Activate(row);
        }
    }

    /// Types into a cell as the operator does, and ends with Enter; false when that is refused.
    bool TypeInto(int row, ListColumn column, const QString &text)
    {
        grid.setCurrentIndex(grid.model()->index(row - 1, int(column) - 1));
        static_cast<QAbstractItemView &>(grid).edit(grid.currentIndex());
        grid.findChild<QLineEdit *>("cellEditor")->setText(text);
        return grid.FinishEdit();
    }

    /// A cell, its lines separated by "/".
    QString Cell(int row, ListColumn column) const
    {
        return shownList->Row(row).Cell(column).replace("\r\n", "/");
    }

    /// These cells of a row, separated by "|".
    QString Cells(int row, std::initializer_list<ListColumn> columns) const
    {
        QStringList cells;
        for (const ListColumn column : columns)
            cells += Cell(row, column);
        return cells.join('|');
    }

    /// Everything of a row but its error text.
    QString WholeRow(int row) const
    {
        QStringList cells;
        for (int column = 1; column <= int(ListColumn::Skipped); ++column)
            cells += Cell(row, ListColumn(column));
        return cells.join('|');
    }

    /// Another program's lock for writing, which this program gives up on at once.
    void LockDatabase()
    {
        state.db.OpenRS("PRAGMA busy_timeout = 1");
        file.Run("BEGIN IMMEDIATE");
    }
    void UnlockDatabase() { file.Run("ROLLBACK"); }

    ScriptedBoxes boxes;
    SpreadGrid grid;
    AnswerList list;
    const AnswerList *shownList = &list; ///< the list that cells are read from
};
