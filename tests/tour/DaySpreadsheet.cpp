#include "sheet/SheetColumns.h"
#include "tour/Day.h"

#include <QFile>
#include <algorithm>

void Day::PlanSpreadsheet()
{
    AtRest("SC030110", "export", [this] { Key(Qt::Key_E, Qt::AltModifier); });
    Step("ListOutput", "export", [this] { Key(Qt::Key_Return, Qt::ControlModifier); });
    PlanFile("plan.csv");
    AtRest("SC030110", "exported", [this] {
        EditPlan();
        Key(Qt::Key_T, Qt::AltModifier);
    });
    PlanFile("plan.csv");
    Step("SheetImport", "import", [this] { Key(Qt::Key_Return, Qt::ControlModifier); });
    Step("SC030110", "imported", [this] { Key(Qt::Key_M, Qt::AltModifier); });
    PlanSummary({});
}

/// What a planner does to the list in a spreadsheet: dates, a split, a word where a date belongs
/// and more than is open.
void Day::EditPlan()
{
    QFile file(Path("plan.csv"));
    Expect(file.open(QIODevice::ReadWrite), "the list was written");
    QStringList rows = QString::fromUtf8(file.readAll()).split("\r\n");
    const QStringList headings = rows.first().split(',');
    const auto edit = [&](QString &row, const char *heading, const QString &text) {
        QStringList cells = row.split(',');
        const qsizetype column = headings.indexOf(heading);
        Expect(column >= 0 && cells.size() == headings.size(), "the sheet has plain cells");
        cells[std::max<qsizetype>(0, column)] = text;
        row = cells.join(',');
    };
    std::vector<const Line *> plain;
    for (int row = 1; row <= Lines().Count() && plain.size() < 5; ++row)
        if (IsPlain(Lines().At(row)))
            plain.push_back(&Lines().At(row));
    for (size_t at = 0; at < plain.size(); ++at) {
        const auto row = std::ranges::find_if(
            rows, [&](const QString &text) { return text.contains(plain[at]->OrderNo()); });
        Expect(row != rows.end(), "the sheet has the order");
        edit(*row, SheetHeading::AnswerDate,
             at == 3 ? QString("来週") : DayFromToday(int(12 + at), "yyyy/M/d"));
        if (at == 4)
            edit(*row, SheetHeading::AnswerQuantity, "99999");
        if (at != 1)
            continue;
        edit(*row, SheetHeading::AnswerQuantity, Half(*plain[at]));
        QString split = *row;
        edit(split, SheetHeading::ShpSubNo, {});
        edit(split, SheetHeading::AnswerDate, DayFromToday(26, "yyyy/M/d"));
        rows.insert(row + 1, split);
    }
    file.resize(0);
    file.seek(0);
    file.write(rows.join("\r\n").toUtf8());
}
