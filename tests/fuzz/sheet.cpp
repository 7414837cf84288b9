// Any bytes as a spreadsheet file that comes back: its rows stand at lines of the file that follow
// each other, and each of them is accounted for.

#include "Fuzzing.h"

#include "sheet/SheetPlan.h"

#include <algorithm>

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView file(reinterpret_cast<const char *>(data), qsizetype(size));
    const Sheet sheet = ReadSheet(file);
    Require(sheet.fault == SheetFault::None || sheet.rows.empty(), "a file at fault has no rows");
    int line = 1; // of the headings
    for (const SheetRow &row : sheet.rows) {
        Require(row.line > line, "rows follow each other");
        line = row.line;
    }
    const auto isEnd = [](char byte) { return byte == '\r' || byte == '\n'; };
    Require(line <= 1 + std::count_if(file.begin(), file.end(), isEnd), "a line of the file");
    const SheetPlan plan = PlanSheet(sheet, LineList());
    Require(plan.refused.size() == sheet.rows.size(), "an empty list has none of the lines");
    return 0;
}
