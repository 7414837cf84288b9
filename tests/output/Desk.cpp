#include "data/Tables.h"
#include "lines/LineSplit.h"
#include "lines/ListLoading.h"
#include "output/AnswerCreation.h"
#include "platform/MsgBox.h"

#include <QApplication>
#include <QRandomGenerator>
#include <QThread>
#include <cstdio>
#include <cstdlib>

// One desk of an office, as a process: in each sitting it loads the list, sets dates, splits lines
// and creates answers, and says Yes to every question. It writes what the boxes said, one line
// each, and "sent" with each answer that the list then calls sent.
//
//     desk HOME SEED SITTINGS

namespace {

int Say(QString text)
{
    std::printf("%s\n", text.replace('\r', '|').toUtf8().constData());
    std::fflush(stdout);
    return BoxButton::Yes;
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

/// Sets dates in all orders or most, and splits some of their lines. Returns their rows.
RowSelection ChangeOrders(LineList &list, bool isAll, QRandomGenerator &random)
{
    LineEdits edits(list);
    std::vector<RowSelection::Range> changed;
    for (int row = 1; row <= list.Count(); ++row) {
        const int first = row;
        int last = row - 1 + int(list.RowsOfOrder(list.At(row).Key().accNo).size());
        const bool isLeftAlone = !isAll && random.bounded(5) == 0;
        const bool isTooMuch = Left(list, row).IsNegative(); // by splits of both desks
        for (; !isLeftAlone && row <= last; ++row) {
            if (isTooMuch)
                list.At(row).SetQuantity(Decimal(1));
            if (list.At(row).Now().date.isEmpty() || random.bounded(3) > 0)
                list.At(row).SetDate(SomeDate(random));
            const Decimal quantity = list.At(row).Now().quantity;
            const Decimal part(random.bounded(1, 40));
            if (random.bounded(3) > 0 || !(quantity > part))
                continue;
            list.At(row).SetQuantity(part);
            CopyLine(edits, row);
            list.At(++row).SetDate(SomeDate(random));
            list.At(row).SetQuantity(quantity - part);
            ++last;
        }
        row = last;
        if (!isLeftAlone)
            changed.emplace_back(first, last);
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
    if (!db.OpenDB(files, "C:\\TLDB0010.MDB", false, ConnectText))
        return 1;
    QRandomGenerator random(QByteArray(argv[2]).toUInt());
    SetFileFault([&](FileOp op, const QString &) {
        if (op == FileOp::Open)
            QThread::msleep(random.bounded(20)); // nothing is locked: the other desk's turn
        return 0;
    });
    for (int sitting = 0; sitting < std::atoi(argv[3]); ++sitting) {
        LineList list;
        LoadList(db, SearchConditions(), list);
        RowSelection selected = ChangeOrders(list, sitting == 0, random);
        const RowSelection wanted = selected;
        QThread::msleep(random.bounded(20));
        AnswerCreation(db, files, list, selected, WriteStamp::Now(), [](const QString &) {
        }).MakeAnswers();
        wanted.ForEach([&](int row) {
            const Line &line = list.At(row);
            const QStringList answer{line.OrderNo(), line.Text(LineField::PayNo),
                                     line.Now().quantity.ToText(), line.Now().date};
            if (!selected.Contains(row))
                Say("sent " + answer.join('|'));
            return true;
        });
    }
    return 0;
}
