#pragma once

#include "answerlist/AnswerList.h"
#include "answerlist/ListLoading.h"
#include "grid/SpreadGrid.h"
#include "output/AnswerCreation.h"
#include "support/FixedClock.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <QItemSelectionModel>
#include <QStringList>
#include <gtest/gtest.h>

/// A database with customers, orders and lines, and the answer list over it.
class AnswerRun : public testing::Test
{
protected:
    AnswerRun() { list.Create(&grid); }
    void TearDown() override { SetFileFault({}); }

    /// A customer that answers every line and gets the short record in C:\<code>.TXT. `changes` is
    /// what an UPDATE sets.
    void AddCustomer(const QString &code, const QString &changes = {})
    {
        file.Insert("TLMT0040", {{"CustCD", code},
                                 {"CustName", "顧客" + code},
                                 {"VanCD", "VAN" + code},
                                 {"LinKBN", 1},
                                 {"NokiInfKBN", 1},
                                 {"NokiInfPath", "C:\\" + code + ".TXT"},
                                 {"HenpVerPath", "10SIDE" + code}});
        Change("TLMT0040", "CustCD = '" + code + '\'', changes);
    }

    void AddOrder(int accNo, const QString &customer, int open = 100, bool isEdi = false)
    {
        file.Insert(
            "TLAC0010",
            {{"AccNo", accNo}, {"CustCD", customer}, {"ZanVal", open}, {"EDIKBN", isEdi ? 1 : 0}});
        if (isEdi)
            file.Insert("TLEI0010", {{"AccNo", accNo}, {"CockKBN", "K"}, {"KobaiTanto", "TANTO"}});
        m_customer = customer;
    }

    /// A line of the order added last, 10 pieces answered for 2 December, a day later than asked
    /// for. Lines are listed in the order of `listKey`.
    void AddLine(int accNo, int shpSubNo, const QString &changes = {}, const QString &listKey = {})
    {
        file.Insert("TLSP0010", {{"AccNo", accNo},
                                 {"AccSubNo", 1},
                                 {"ShpSubNo", shpSubNo},
                                 {"CustCD", m_customer},
                                 {"OdrNo", QString("PO-%1").arg(accNo)},
                                 {"PayKeyNo", QString("KEY-%1").arg(accNo)},
                                 {"AccHinCD", listKey.isEmpty() ? QString::number(accNo) : listKey},
                                 {"HinCD", "OWN"},
                                 {"LimDate", "20261201"},
                                 {"PayNo", QString("P%1").arg(shpSubNo)},
                                 {"AccVal", 100},
                                 {"IndVal", 10},
                                 {"AnsVal", 10},
                                 {"AnsLimDate", "20261202"},
                                 {"AnsMark", "2"},
                                 {"ShpSts", 1},
                                 {"DenKBN", 2}});
        Change("TLSP0010", QString("AccNo = %1 AND ShpSubNo = %2").arg(accNo).arg(shpSubNo),
               changes);
    }

    void Load()
    {
        file.Open(db);
        Reload();
    }

    void Reload() { ASSERT_GT(LoadList(db, SearchConditions(), list).lineCount, 0); }

    void Select(std::initializer_list<int> rows)
    {
        grid.clearSelection();
        for (const int row : rows)
            grid.selectionModel()->select(grid.model()->index(row - 1, 0),
                                          QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }

    void SelectAll() { grid.selectAll(); }

    AnswerCreation::Counts Make()
    {
        status.clear();
        AnswerCreation creation(db, files, list, {"20261124", "093000"},
                                [this](const QString &text) { status += text; });
        creation.MakeAnswers();
        return creation.Count();
    }

    /// The lines of an answer file, line ends taken off.
    QList<QByteArray> Records(const QString &name) const
    {
        const QByteArray bytes
            = files.FileExists("C:\\" + name) ? file.folder.Read(name) : QByteArray();
        EXPECT_TRUE(bytes.isEmpty() || bytes.endsWith("\r\n"));
        QList<QByteArray> lines = bytes.split('\n');
        lines.removeLast();
        for (QByteArray &line : lines)
            line.chop(1);
        return lines;
    }

    /// "済済": the two states of each row, "-" where there is none.
    QString States() const
    {
        QStringList states;
        for (int row = 1; row <= list.RowCount(); ++row) {
            const ListRow line = list.Row(row);
            states += QString(line.IsAnswered() ? DoneMark : "-")
                      + QString(line.IsShipped() ? DoneMark : "-");
        }
        return states.join(' ');
    }

    ScriptedBoxes boxes;
    const FixedClock clock{QDateTime(QDate(2026, 11, 25), QTime(10, 11, 12))};
    TestDatabase file;
    const Files files = file.folder.OnDriveC();
    bDAO db;
    SpreadGrid grid;
    AnswerList list;
    QStringList status;

private:
    void Change(const QString &table, const QString &where, const QString &changes)
    {
        if (!changes.isEmpty())
            file.Run("UPDATE " + table + " SET " + changes + " WHERE " + where);
    }

    QString m_customer;
};
