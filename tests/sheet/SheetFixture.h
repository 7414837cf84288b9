#pragma once

#include "lines/LinesFixture.h"
#include "sheet/CsvWriter.h"
#include "sheet/SheetPlan.h"

#include <QBuffer>
#include <initializer_list>

/// A file of the list in the hands of somebody who knows its headings, but not the program.
struct EditedFile
{
    QStringList headings;
    std::vector<QStringList> rows;

    /// Takes a file without line breaks or separators within its cells.
    explicit EditedFile(const QString &csv)
    {
        for (const QString &line : QString(csv).remove(QChar(0xfeff)).split("\r\n"))
            if (!line.isEmpty())
                rows.push_back(line.split(','));
        headings = rows.front();
        rows.erase(rows.begin());
    }

    QString &Cell(int row, const QString &heading)
    {
        return rows.at(size_t(row - 1))[headings.indexOf(heading)];
    }

    void Copy(int row, std::initializer_list<std::pair<const char *, const char *>> cells)
    {
        rows.push_back(rows.at(size_t(row - 1)));
        for (const auto &[heading, text] : cells)
            Cell(int(rows.size()), heading) = text;
    }

    void Drop(const QString &heading)
    {
        const qsizetype at = headings.indexOf(heading);
        headings.removeAt(at);
        for (QStringList &row : rows)
            row.removeAt(at);
    }

    QString Text(const QString &separator = ",") const
    {
        QString text = headings.join(separator) + "\r\n";
        for (const QStringList &row : rows)
            text += row.join(separator) + "\r\n";
        return text;
    }
};

/// What a plan says, one word a row of the file: "2:100/=>50/20261208" for a change of the line in
/// the file's line 2, "4:+30/20261208@1" for a split of the list's row 1, "3:Shipped".
inline QString PlanText(const SheetPlan &plan)
{
    const auto answerText
        = [](const Answer &answer) { return answer.quantity.ToText() + '/' + answer.date; };
    std::vector<std::pair<int, QString>> words;
    for (const SheetPlan::Change &change : plan.changes)
        words.emplace_back(change.fileLine,
                           answerText(change.before) + "=>" + answerText(change.after));
    for (const SheetPlan::Split &split : plan.splits)
        words.emplace_back(split.fileLine,
                           '+' + answerText(split.answer) + '@' + QString::number(split.below));
    for (const SheetPlan::Refused &row : plan.refused)
        words.emplace_back(row.fileLine, RefusalText(row.refusal)
                                             + (row.cell.isEmpty() ? "" : "[" + row.cell + ']'));
    std::ranges::sort(words);
    QStringList texts;
    for (const auto &[line, text] : words)
        texts += QString::number(line) + ':' + text;
    if (plan.unchanged > 0)
        texts += QString("=%1").arg(plan.unchanged);
    return texts.join(' ');
}

class SheetFixture : public LinesFixture
{
protected:
    QByteArray Written(CsvEncoding encoding = CsvEncoding::Utf8) const
    {
        QBuffer out;
        out.open(QIODevice::WriteOnly);
        CsvWriter writer(out, encoding);
        EXPECT_TRUE(writer.Write(list, AllRows(), [] { return true; }));
        return out.data();
    }

    RowSelection AllRows() const { return RowSelection({{1, list.Count()}}); }

    EditedFile File() const { return EditedFile(QString::fromUtf8(Written())); }

    QString Planned(const QByteArray &bytes) const
    {
        const Sheet sheet = ReadSheet(bytes);
        return sheet.fault == SheetFault::None ? PlanText(PlanSheet(sheet, list))
                                               : FaultText(sheet.fault);
    }
    QString Planned(const EditedFile &file) const { return Planned(file.Text().toUtf8()); }
};
