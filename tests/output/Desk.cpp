#include "data/Tables.h"
#include "lines/LineSplit.h"
#include "lines/ListLoading.h"
#include "output/AnswerCreation.h"
#include "platform/MsgBox.h"

#include <QApplication>
#include <QRandomGenerator>
#include <QThread>
#include <cstdio>
#include <iostream>

// One desk of an office, as a process: for each number on its standard input it loads the list,
// sets dates, splits lines and creates answers a few times, and says Yes to every question. It
// writes what the boxes said, one line each, and at last "done".

namespace {

constexpr int Sittings = 3;
constexpr auto DatabasePath = "C:\\TLDB0010.MDB";

int Say(QString text)
{
    std::printf("%s\n", text.replace('\r', '|').toUtf8().constData());
    std::fflush(stdout);
    return BoxButton::Yes;
}

QString Describe(const Line &line)
{
    return line.OrderNo() + ' ' + line.Text(LineField::PayNo) + '|' + line.Now().quantity.ToText()
           + '|' + line.Now().date;
}

QString SomeDate(QRandomGenerator &random)
{
    return "202712" + QString::number(random.bounded(10, 29));
}

/// What is left to answer of a row's order.
Decimal Left(const LineList &list, int row)
{
    Decimal left = list.At(row).OpenQuantity();
    for (const int of : list.RowsOfOrder(list.At(row).Key().accNo))
        left = left - list.At(of).Now().quantity;
    return left;
}

/// Sets dates in the rows of an order and splits some of its lines, within what is open.
void ChangeOrder(LineList &list, int &row, QRandomGenerator &random)
{
    const qint64 order = list.At(row).Key().accNo;
    const bool isTooMuch = Left(list, row).IsNegative(); // by splits of both desks
    for (; row <= list.Count() && list.At(row).Key().accNo == order; ++row) {
        if (isTooMuch)
            list.At(row).SetQuantity(Decimal(1));
        if (list.At(row).Now().date.isEmpty() || random.bounded(3) > 0)
            list.At(row).SetDate(SomeDate(random));
        if (random.bounded(3) > 0)
            continue;
        const Decimal quantity = list.At(row).Now().quantity;
        if (random.bounded(2) == 0)
            list.At(row).SetQuantity(Decimal(random.bounded(1, 40)));
        if (Left(list, row).IsNegative())
            list.At(row).SetQuantity(quantity);
        if (const Decimal left = Left(list, row); left > Decimal()) {
            CopyLine(list, row);
            list.At(++row).SetDate(SomeDate(random));
            list.At(row).SetQuantity(left);
        }
    }
}

/// Changes most orders of the list. Returns their rows.
RowSelection ChangeMost(LineList &list, QRandomGenerator &random)
{
    std::vector<RowSelection::Range> changed;
    for (int row = 1; row <= list.Count();) {
        const int first = row;
        if (random.bounded(5) == 0) {
            row += int(list.RowsOfOrder(list.At(row).Key().accNo).size());
            continue;
        }
        ChangeOrder(list, row, random);
        changed.emplace_back(first, row - 1);
    }
    return RowSelection(std::move(changed));
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    SetMsgBoxHandler([](const MessageBoxRequest &box) { return Say(box.text); });
    const Files files(DrivePaths(IniFile::Read(QString(argv[1]) + "/TALVEN.INI")));
    bDAO db;
    if (!db.OpenDB(files, DatabasePath, false, ConnectText))
        return 1;
    for (unsigned seed = 0; std::cin >> seed;) {
        QRandomGenerator random(seed);
        SetFileFault([&](FileOp op, const QString &) {
            if (op == FileOp::Open)
                QThread::msleep(random.bounded(20)); // nothing is locked: the other desk's turn
            return 0;
        });
        for (int sitting = 0; sitting < Sittings; ++sitting) {
            LineList list;
            LoadList(db, SearchConditions(), list);
            RowSelection selected = ChangeMost(list, random);
            const RowSelection wanted = selected;
            QThread::msleep(random.bounded(20));
            AnswerCreation(db, files, list, selected, WriteStamp::Now(), [](const QString &) {
            }).MakeAnswers();
            wanted.ForEach([&](int row) {
                if (!selected.Contains(row))
                    Say("sent " + Describe(list.At(row)));
                return true;
            });
        }
        Say("done");
    }
    return 0;
}
