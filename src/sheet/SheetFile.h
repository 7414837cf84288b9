#pragma once

#include "lines/LineList.h"
#include "lines/RowSelection.h"

#include <QString>
#include <functional>
#include <optional>

enum class SheetFormat { CsvUtf8, CsvShiftJis, Xlsx };

/// How a file was written.
struct SavedSheet
{
    int error = 0;       ///< the run-time's error number; 0: it is there
    QString systemError; ///< what the system says of it
    bool isStopped = false;
    bool hasTooManyLines = false;   ///< more than a workbook can hold
    bool hasLostCharacters = false; ///< a "?" stands for what Shift-JIS does not have

    bool IsSaved() const { return error == 0 && !isStopped && !hasTooManyLines; }
};

/// Writes rows of the list to a file, in place of one that is there: whole, or not at all. `step`
/// is called for each row and stops the work with False.
SavedSheet SaveSheet(const LineList &list, const RowSelection &rows, const QString &localPath,
                     SheetFormat format, const std::function<bool()> &step);

/// The bytes of a file that is to be read back; nothing, and the reason, when it can't be read or
/// is larger than any list is.
std::optional<QByteArray> SheetBytes(const QString &localPath, QString &systemError);
