#pragma once

#include "output/AnswerRun.h"
#include "tldb/answers/AnswerFile.h"

#include <QProcess>
#include <QRegularExpression>
#include <map>

/// Orders that desks, each a process of its own, answer in the way of a number.
class Desks : public AnswerRun
{
protected:
    static constexpr int OrderCount = 5;
    static constexpr int Open = 100;

    Desks()
    {
        file.folder.Write("TALVEN.INI", "[DRIVES]\r\nC=" + file.folder.Path().toUtf8() + "\r\n");
        AddCustomer("C1", "LinKBN = 2");
        AddCustomer("C2", "LinKBN = 2, HenpVerPath = '11SIDE'");
    }

    /// Orders of 100 pieces, and no others: open in one line or two, or answered by a part.
    void AddOrders()
    {
        Clear();
        const QString open = "AnsVal = 0, AnsLimDate = '', AnsMark = ' ', IndVal = %1";
        for (int order = 1; order <= OrderCount; ++order) {
            AddOrder(order, order == OrderCount ? "C2" : "C1", Open);
            AddLine(order, 1,
                    order == 2 ? "AnsVal = 60, IndVal = 100" : open.arg(order == 3 ? 30 : 100));
            if (order == 3)
                AddLine(order, 2, open.arg(70));
        }
    }

    void Start(QProcess &desk, int seed, int sittings, const QStringList &variables = {}) const
    {
        desk.setEnvironment(QProcess::systemEnvironment() + variables);
        desk.start(DESK, {file.folder.Path(), QString::number(seed), QString::number(sittings)});
    }

    /// What a desk has said to its end, line by line; line breaks of boxes are "|".
    static QStringList SaidBy(QProcess &desk)
    {
        EXPECT_TRUE(desk.waitForFinished(60'000));
        const QRegularExpression usual("^(sent |このまま|作成できませんでした[|]注文№ |"
                                       "納期回答作成処理が|有効な行を)");
        const QStringList said
            = QString(desk.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
        EXPECT_EQ(said.filter(usual), said) << desk.readAllStandardError().constData();
        return said;
    }

    /// Checks the orders after desks have said this. Of `mostRepeated` orders a second record may
    /// call itself the first; a piece at a file's end is passed over when `isTornAllowed`.
    void CheckOrders(const QStringList &said, int mostRepeated = 0, bool isTornAllowed = false)
    {
        const bool mayRepeat = mostRepeated > 0;
        const auto isMoreAgreed = [&](const QString &orderNo) {
            const QRegularExpression asked("注残数を超える注文： \\d+ 件[|]　 注文№ [^|]*"
                                           + orderNo);
            return asked.match(said.join('\n')).hasMatch();
        };
        QStringList sent; // "order|delivery|quantity|date"
        std::map<QString, int> firstAnswers;
        for (const QString &name : AnswerFiles()) {
            QByteArray bytes = file.folder.Read(name);
            if (isTornAllowed)
                bytes.truncate(bytes.lastIndexOf("\r\n") < 0 ? 0 : bytes.lastIndexOf("\r\n") + 2);
            int number = 0;
            for (const DecodedAnswer &answer : DecodeAnswers(bytes)) {
                EXPECT_TRUE(answer.faults.empty()) << name.toStdString();
                ++number; // the short records count without a gap
                EXPECT_EQ(answer.Value("recordNumber").toInt(), name == "C1.TXT" ? number : 1);
                const QString orderNo = answer.Value("orderNumber");
                firstAnswers[orderNo] += answer.Value("answerKind") == "1";
                double sum = 0;
                for (const AnsweredDelivery &delivery : answer.deliveries) {
                    const auto &values = delivery.values;
                    sent += QStringList{orderNo, values[1].text, values[3].text, values[2].text}
                                .join('|');
                    sum += values[3].text.toDouble();
                }
                EXPECT_TRUE(sum <= Open || isMoreAgreed(orderNo)) << orderNo.toStdString() << sum;
            }
        }
        for (const auto &[orderNo, count] : firstAnswers)
            mostRepeated -= std::max(count - 1, 0);
        EXPECT_GE(mostRepeated, 0);
        CheckHistory(sent, isTornAllowed || mayRepeat);

        EXPECT_EQ(file.Other().Engine().FindDamage(), QStringList());
        const QString marked = file.Rows("SELECT OdrNo, PayNo, CAST(AnsVal AS BIGINT), AnsLimDate "
                                         "FROM TLSP0010 WHERE AnsLimUmu = 3");
        QStringList claimed = marked.split(' ', Qt::SkipEmptyParts);
        for (const QString &line : said.filter("sent "))
            claimed += line.section(' ', 1);
        for (const QString &delivery : claimed)
            EXPECT_TRUE(sent.contains(delivery)) << delivery.toStdString() << " never went out";
        const QString above = file.Rows("SELECT OdrNo FROM TLSP0010 GROUP BY AccNo, OdrNo "
                                        "HAVING SUM(AnsVal) > "
                                        + QString::number(Open));
        for (const QString &orderNo : above.split(' ', Qt::SkipEmptyParts))
            EXPECT_TRUE(isMoreAgreed(orderNo)) << orderNo.toStdString();
    }

private:
    /// The history has what was sent, line by line, and nothing else; a record may be without its
    /// marks and rows when `mayLack`.
    void CheckHistory(QStringList sent, bool mayLack)
    {
        const QString kept = file.Rows("SELECT OdrNo, PayNo, CAST(AnsVal AS INTEGER), AnsLimDate "
                                       "FROM TLAH0010");
        for (const QString &row : kept.split(' ', Qt::SkipEmptyParts))
            EXPECT_TRUE(sent.removeOne(row)) << row.toStdString() << " never went out";
        EXPECT_TRUE(sent.isEmpty() || mayLack) << sent.join(' ').toStdString();
        EXPECT_EQ(file.Rows("SELECT AccNo FROM TLSP0010 WHERE AnsLimUmu = 3 AND NOT EXISTS ("
                            "SELECT 1 FROM TLAH0010 H WHERE H.AccNo = TLSP0010.AccNo "
                            "AND H.ShpSubNo = TLSP0010.ShpSubNo)"),
                  "")
            << "marked without a trace";
    }
};
