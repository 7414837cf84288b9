#include "tour/Looks.h"

#include "sheet/SheetColumns.h"

#include <QApplication>
#include <QDate>
#include <QFile>
#include <QPalette>

bool Looks::Take(const QString &palette, int points)
{
    QPalette colors;
    if (palette == "dark") {
        colors = QPalette(QColor(0x2A2E32));
        colors.setColor(QPalette::Base, QColor(0x1B1E20));
        colors.setColor(QPalette::Highlight, QColor(0x3DAEE9));
        colors.setColor(QPalette::HighlightedText, QColor(0xFCFCFC));
    } else if (palette == "contrast") {
        colors
            = QPalette(Qt::white, Qt::black, Qt::white, Qt::black, Qt::gray, Qt::white, Qt::black);
        colors.setColor(QPalette::Highlight, Qt::yellow);
        colors.setColor(QPalette::HighlightedText, Qt::black);
        colors.setColor(QPalette::ButtonText, Qt::white);
    } else if (palette != "light") {
        return false;
    }
    if (palette != "light")
        QApplication::setPalette(colors);
    QFont font = QApplication::font();
    font.setPointSize(points);
    QApplication::setFont(font);
    return true;
}

void Looks::Plan()
{
    Step("SC030010", "search", [this] {
        Keys("C0001");
        Key(Qt::Key_Return, Qt::ControlModifier);
    });
    AtRest("SC030110", "list", [this] {
        Wait([] { return Lines().Count() > 0; });
        WritePlan();
        Key(Qt::Key_Home);
        Key(Qt::Key_Down, Qt::ShiftModifier);
        Shoot("list");
        Key(Qt::Key_Space, Qt::ShiftModifier);
        Key(Qt::Key_I, Qt::AltModifier);
    });
    Step("SC030120", "detail", [this] { Key(Qt::Key_Escape); });
    AtRest("SC030110", "import", [this] { Key(Qt::Key_T, Qt::AltModifier); });
    PlanFile("plan.csv");
    Step("SheetImport", "import", [this] { Key(Qt::Key_Escape); });
    AtRest("SC030110", "way back", [this] { Key(Qt::Key_X, Qt::AltModifier); });
    AtRest("SC030010", "end", [this] { Key(Qt::Key_X, Qt::AltModifier); });
}

/// Dates for some lines, and a word for another.
void Looks::WritePlan()
{
    constexpr int Rows = 12;
    const QStringList headings = {SheetHeading::AccNo, SheetHeading::AccSubNo,
                                  SheetHeading::ShpSubNo, SheetHeading::AnswerDate};
    QStringList rows = {headings.join(',')};
    for (int row = 1; row <= Lines().Count() && rows.size() <= Rows; ++row) {
        const Line &line = Lines().At(row);
        if (!line.IsOpen())
            continue;
        const QString date = rows.size() == Rows
                                 ? QString("来週")
                                 : QDate::currentDate().addDays(20).toString("yyyy/M/d");
        rows += QString("%1,%2,%3,%4")
                    .arg(line.Key().accNo)
                    .arg(line.Key().accSubNo)
                    .arg(line.Key().shpSubNo)
                    .arg(date);
    }
    QFile file(Path("plan.csv"));
    if (!file.open(QIODevice::WriteOnly) || file.write(rows.join("\r\n").toUtf8()) <= 0)
        Fail("the plan can't be written");
}
