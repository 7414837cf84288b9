#include "sheet/SheetFile.h"

#include "platform/RuntimeError.h"
#include "sheet/CsvWriter.h"
#include "sheet/XlsxWriter.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryFile>

namespace {

bool CopyAll(QIODevice &from, QIODevice &to)
{
    constexpr qint64 Chunk = 1 << 20;
    while (!from.atEnd()) {
        const QByteArray bytes = from.read(Chunk);
        if (bytes.isEmpty() || to.write(bytes) != bytes.size())
            return false;
    }
    return true;
}

/// A workbook is made elsewhere and copied: its library writes to names, not to open files.
bool SaveWorkbook(const LineList &list, const RowSelection &rows, QSaveFile &file,
                  const std::function<bool()> &step, SavedSheet &saved)
{
    QTemporaryFile made;
    if (made.open()) {
        switch (WriteXlsx(list, rows, made.fileName(), step)) {
        case XlsxResult::Written:
            return CopyAll(made, file);
        case XlsxResult::Stopped:
            saved.isStopped = true;
            return false;
        case XlsxResult::Failed:
            break;
        }
    }
    saved.error = RuntimeError::DiskFull;
    saved.systemError = QDir::tempPath() + ": no room for the workbook";
    return false;
}

} // namespace

SavedSheet SaveSheet(const LineList &list, const RowSelection &rows, const QString &localPath,
                     SheetFormat format, const std::function<bool()> &step)
{
    SavedSheet saved;
    saved.hasTooManyLines = format == SheetFormat::Xlsx && rows.Count() > MostXlsxLines;
    if (saved.hasTooManyLines)
        return saved;
    QSaveFile file(localPath);
    bool isWritten = file.open(QIODevice::WriteOnly);
    if (isWritten && format == SheetFormat::Xlsx) {
        isWritten = SaveWorkbook(list, rows, file, step, saved);
    } else if (isWritten) {
        CsvWriter writer(file, format == SheetFormat::CsvShiftJis ? CsvEncoding::ShiftJis
                                                                  : CsvEncoding::Utf8);
        isWritten = writer.Write(list, rows, [&] { return !(saved.isStopped |= !step()); });
        saved.hasLostCharacters = writer.HasLostCharacters();
    }
    if (isWritten)
        isWritten = file.commit();
    if (!isWritten && !saved.isStopped && saved.error == RuntimeError::None) {
        saved.error = RuntimeError::OfFile(file);
        saved.systemError = file.errorString();
    }
    return saved;
}

std::optional<QByteArray> SheetBytes(const QString &localPath, QString &systemError)
{
    constexpr qint64 MostBytes = qint64(1) << 30;
    QFile file(localPath);
    if (!file.open(QIODevice::ReadOnly)) {
        systemError = file.errorString();
        return std::nullopt;
    }
    QByteArray bytes = file.read(MostBytes + 1);
    if (file.error() != QFile::NoError)
        systemError = file.errorString();
    else if (bytes.size() > MostBytes)
        systemError = "larger than 1 GiB";
    else
        return bytes;
    return std::nullopt;
}
