#pragma once

#include "answerlist/ListOutput.h"
#include "lines/LineEdits.h"
#include "platform/LongWork.h"
#include "sheet/SheetPlan.h"

#include <optional>

struct SearchConditions;

/// The list's ways to files and paper and back, with their boxes, for the screen that shows it.
class ListFiles
{
public:
    ListFiles(QWidget &screen, const LineList &list, const SearchConditions &conditions,
              ShowStatusText showStatus);

    /// CSV出力: asks for rows, form and file, and writes them.
    void Export(const ListParts &parts);

    /// 印刷／PDF: asks for rows and printer or file, and prints them.
    void Print(const ListParts &parts);

    /// CSV取込: asks for a file and shows what it would change. The plan when its good rows are to
    /// be taken.
    std::optional<SheetPlan> Import();

private:
    QString AskFile(const QString &title, bool isSaved, const QString &filter,
                    const QString &suffix);
    void Save(const RowSelection &rows, OutputForm form);
    void SavePdf(const struct PaperTable &table);
    void PrintOut(const struct PaperTable &table);
    void TellWritten(const QString &path, int rows);
    QString About() const;

    QWidget &m_screen;
    const LineList &m_list;
    const SearchConditions &m_conditions;
    ShowStatusText m_showStatus;
};
