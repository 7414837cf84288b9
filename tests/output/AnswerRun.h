#pragma once

#include "lines/ListLoading.h"
#include "output/AnswerCreation.h"
#include "platform/FileLocks.h"
#include "support/FixedClock.h"
#include "support/QtPrinters.h"
#include "support/ScriptedBoxes.h"
#include "support/TestDatabase.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

/// A database with customers, orders and lines, and the list over it. At every box that is shown
/// other programs can go on.
class AnswerRun : public testing::Test
{
protected:
    AnswerRun()
    {
        boxes.OnBox([this](const MessageBoxRequest &box) {
            ExpectNothingHeld(box);
            if (saysYes && box.title == "確認")
                boxes.Press(BoxButton::Yes);
        });
    }
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

    void Reload()
    {
        ASSERT_GT(LoadList(db, SearchConditions(), list).lineCount, 0);
        Select({});
    }

    /// Deletes all orders and empties the answer files.
    void Clear()
    {
        file.Run("DELETE FROM TLSP0010; DELETE FROM TLAC0010; DELETE FROM TLEI0010");
        for (const QString &name : AnswerFiles())
            QFile::remove(file.folder.Path(name));
    }

    void Select(std::initializer_list<int> rows)
    {
        std::vector<RowSelection::Range> ranges;
        for (const int row : rows)
            ranges.emplace_back(row, row);
        selected = RowSelection(std::move(ranges));
    }

    void SelectAll() { selected = RowSelection({{1, list.Count()}}); }

    AnswerCreation::Counts Make()
    {
        status.clear();
        AnswerCreation creation(db, files, list, selected, {"20261124", "093000"},
                                [this](const QString &text) {
                                    status += text;
                                    if (onStatus)
                                        onStatus(text);
                                });
        failedRow = creation.MakeAnswers();
        return creation.Count();
    }

    QStringList AnswerFiles() const
    {
        return QDir(file.folder.Path()).entryList({"*.TXT"}, QDir::Files);
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

    /// The order number of each record.
    QString Orders(const QString &name) const
    {
        QStringList orders;
        for (const QByteArray &record : Records(name))
            orders += record.mid(47, 23).trimmed();
        return orders.join(' ');
    }

    /// Quantity, date and answer state of an order's lines as they are stored.
    QString Stored(int accNo)
    {
        return file.Rows(QString("SELECT AnsVal, AnsLimDate, AnsLimUmu FROM TLSP0010 "
                                 "WHERE AccNo = %1 ORDER BY ShpSubNo")
                             .arg(accNo));
    }

    /// "済済": the two states of each row, "-" where there is none.
    QString States() const
    {
        QStringList states;
        for (int row = 1; row <= list.Count(); ++row)
            states += QString(list.At(row).IsAnswered() ? "済" : "-")
                      + QString(list.At(row).IsShipped() ? "済" : "-");
        return states.join(' ');
    }

    ScriptedBoxes boxes;
    const FixedClock clock{QDateTime(QDate(2026, 11, 25), QTime(10, 11, 12))};
    TestDatabase file;
    const Files files = file.folder.OnDriveC();
    bDAO db;
    LineList list;
    RowSelection selected;
    QStringList status;
    std::function<void(const QString &)> onStatus; ///< hears every status text of a run
    int failedRow = 0;
    bool saysYes = false; ///< to what a run asks

private:
    void ExpectNothingHeld(const MessageBoxRequest &box)
    {
        SCOPED_TRACE(box.text.toStdString());
        EXPECT_NO_THROW(file.Run("BEGIN IMMEDIATE; ROLLBACK")) << "the database is held";
        for (const QString &name : AnswerFiles()) {
            QFile answers(file.folder.Path(name));
            EXPECT_TRUE(answers.open(QIODevice::ReadWrite | QIODevice::ExistingOnly));
            EXPECT_EQ(TryLockFile(answers.handle(), FileLock::Exclusive), 0) << name.toStdString();
        }
    }

    void Change(const QString &table, const QString &where, const QString &changes)
    {
        if (!changes.isEmpty())
            file.Run("UPDATE " + table + " SET " + changes + " WHERE " + where);
    }

    QString m_customer;
};
