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
        file.Open(db);
        boxes.OnBox([this](const MessageBoxRequest &box) {
            ExpectNothingHeld(box);
            if (saysYes && box.title == "確認")
                boxes.Press(BoxButton::Yes);
        });
    }
    void TearDown() override { SetFileFault({}); }

    /// A customer that answers every line and gets the short record in C:\<code>.TXT. `changes` is
    /// what an UPDATE sets.
    void AddCustomer(const QString &code, const QString &changes = "LinKBN = 1")
    {
        file.Insert("TLMT0040", {{"CustCD", code}, {"VanCD", "VAN" + code}});
        for (const QString &part : {QString("LinKBN = 1, NokiInfKBN = 1, HenpVerPath = '10SIDE%1',"
                                            "NokiInfPath = 'C:\\%1.TXT'")
                                        .arg(code),
                                    changes})
            file.Run("UPDATE TLMT0040 SET " + part + " WHERE CustCD = '" + code + '\'');
    }

    void AddOrder(int accNo, const QString &customer, int open = 100, bool isEdi = false)
    {
        file.Insert("TLAC0010", {{"AccNo", accNo}, {"ZanVal", open}, {"EDIKBN", isEdi ? 1 : 0}});
        if (isEdi)
            file.Insert("TLEI0010", {{"AccNo", accNo}, {"CockKBN", "K"}, {"KobaiTanto", "TANTO"}});
        m_customer = customer;
    }

    /// A line of the order added last, 10 pieces answered for 2 December, a day later than asked
    /// for. Lines are listed in the order of AccHinCD.
    void AddLine(int accNo, int shpSubNo, const QString &changes = "ShpSts = 1")
    {
        file.Insert("TLSP0010", {{"AccNo", accNo}, {"AccSubNo", 1}, {"ShpSubNo", shpSubNo}});
        for (const QString &part :
             {QString("CustCD = '%1', OdrNo = 'PO-%2', PayKeyNo = 'KEY-%2',"
                      "AccHinCD = '%2', HinCD = 'OWN', LimDate = '20261201', PayNo = 'P%3',"
                      "AccVal = 100, IndVal = 10, AnsVal = 10, AnsLimDate = '20261202',"
                      "AnsMark = '2', ShpSts = 1, DenKBN = 2")
                  .arg(m_customer)
                  .arg(accNo)
                  .arg(shpSubNo),
              changes})
            file.Run(QString("UPDATE TLSP0010 SET %1 WHERE AccNo = %2 AND ShpSubNo = %3")
                         .arg(part)
                         .arg(accNo)
                         .arg(shpSubNo));
    }

    void Load()
    {
        ASSERT_GT(LoadList(db, SearchConditions(), list).lineCount, 0);
        Select({});
    }

    /// Deletes all orders and empties the answer files.
    void Clear()
    {
        file.Run("DELETE FROM TLSP0010; DELETE FROM TLAC0010; DELETE FROM TLEI0010;"
                 "DELETE FROM TLAH0010");
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
        AnswerCreation creation(db, files, list, selected, {"20261124", "093000"}, onStatus);
        creation.MakeAnswers();
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
    std::function<void(const QString &)> onStatus = [](const QString &) {}; ///< every status text
    bool saysYes = false;                                                   ///< to what a run asks

private:
    void ExpectNothingHeld(const MessageBoxRequest &box)
    {
        SCOPED_TRACE(box.text.toStdString());
        EXPECT_NO_THROW(file.Lock(); file.Unlock()) << "the database is held";
        for (const QString &name : AnswerFiles()) {
            QFile answers(file.folder.Path(name));
            EXPECT_TRUE(answers.open(QIODevice::ReadWrite | QIODevice::ExistingOnly));
            EXPECT_EQ(TryLockFile(answers.handle(), FileLock::Exclusive), 0) << name.toStdString();
        }
    }

    QString m_customer;
};
