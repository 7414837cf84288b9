#include "answerlist/ListFiles.h"

#include "answerlist/ListPaper.h"
#include "answerlist/SheetImport.h"
#include "data/SearchConditions.h"
#include "forms/WindowMemory.h"
#include "platform/Clock.h"
#include "platform/Log.h"
#include "platform/MsgBox.h"
#include "platform/RuntimeError.h"
#include "platform/System.h"
#include "sheet/SheetFile.h"
#include "sheet/XlsxWriter.h"
#include "util/VbText.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPageLayout>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>

namespace {

constexpr auto FolderKey = "Sheets/folder"; ///< where the operator's files were last
constexpr auto CsvFilter = "CSV (*.csv)";

void Complain(const QString &title, const QString &path, const QString &why)
{
    MsgBox(QDir::toNativeSeparators(path) + "\r" + why, BoxStyle::Exclamation, title);
}

void SetUpPage(QPagedPaintDevice &device)
{
    constexpr double MarginMm = 10;
    device.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape,
                                     QMarginsF(MarginMm, MarginMm, MarginMm, MarginMm),
                                     QPageLayout::Millimeter));
}

} // namespace

ListFiles::ListFiles(QWidget &screen, const LineList &list, const SearchConditions &conditions,
                     ShowStatusText showStatus)
    : m_screen(screen)
    , m_list(list)
    , m_conditions(conditions)
    , m_showStatus(std::move(showStatus))
{
}

/// The file that the operator names; empty: none.
QString ListFiles::AskFile(const QString &title, bool isSaved, const QString &filter,
                           const QString &suffix)
{
    QSettings settings(WindowMemory::File(), QSettings::IniFormat);
    QString folder = settings.value(FolderKey).toString();
    if (!QFileInfo(folder).isDir())
        folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QFileDialog dialog(&m_screen, title, folder, filter);
    dialog.setObjectName("fileDialog");
    dialog.setAcceptMode(isSaved ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(isSaved ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setDefaultSuffix(suffix);
    if (isSaved)
        dialog.selectFile(QString("納期回答_%1_%2.%3")
                              .arg(Trim(m_conditions.customerCode).remove('/'),
                                   Now().toString("yyyyMMdd"), suffix));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    const QString path = dialog.selectedFiles().constFirst();
    settings.setValue(FolderKey, QFileInfo(path).path());
    return path;
}

QString ListFiles::About() const
{
    const QString customer
        = Trim(Trim(m_conditions.customerCode) + ' ' + Trim(m_conditions.customerName));
    return "得意先　" + (customer.isEmpty() ? "すべて" : customer);
}

void ListFiles::TellWritten(const QString &path, int rows)
{
    qCInfo(LogList).noquote() << QString("出力: %1、%2 行").arg(OneLine(path)).arg(rows);
    m_showStatus(QString("%1 に %2 行を出力しました")
                     .arg(QFileInfo(path).fileName(), Decimal(rows).ToFixed(0, true)));
}

void ListFiles::Export(const ListParts &parts)
{
    ListOutput choice(parts, {OutputForm::CsvUtf8, OutputForm::CsvShiftJis, OutputForm::Xlsx},
                      &m_screen);
    choice.setWindowTitle("CSV出力");
    if (choice.exec() == QDialog::Accepted)
        Save(choice.Rows(), choice.Chosen());
}

void ListFiles::Save(const RowSelection &rows, OutputForm form)
{
    constexpr auto Title = "CSV出力";
    const bool isWorkbook = form == OutputForm::Xlsx;
    const QString path = AskFile(Title, true, isWorkbook ? "Excel (*.xlsx)" : CsvFilter,
                                 isWorkbook ? "xlsx" : "csv");
    if (path.isEmpty())
        return;
    const SheetFormat format = isWorkbook                        ? SheetFormat::Xlsx
                               : form == OutputForm::CsvShiftJis ? SheetFormat::CsvShiftJis
                                                                 : SheetFormat::CsvUtf8;
    SavedSheet saved;
    {
        const Hourglass hourglass;
        LongWork work(m_showStatus, "出力しています…", rows.Count());
        saved = SaveSheet(m_list, rows, path, format, [&] { return work.Step(); });
    }
    if (saved.isStopped)
        m_showStatus("出力を中止しました");
    else if (saved.hasTooManyLines)
        Complain(Title, path,
                 QString("Excel ブックには %1 行までしか入りません")
                     .arg(Decimal(MostXlsxLines).ToFixed(0, true)));
    else if (!saved.IsSaved())
        Complain(Title, path, RuntimeError::Description(saved.error));
    else
        TellWritten(path, rows.Count());
    if (saved.IsSaved() && saved.hasLostCharacters)
        Complain(Title, path, "Shift-JIS にない文字は「?」で出力しました");
}

void ListFiles::Print(const ListParts &parts)
{
    ListOutput choice(parts, {OutputForm::Printer, OutputForm::Pdf}, &m_screen);
    choice.setWindowTitle("印刷／PDF");
    if (choice.exec() != QDialog::Accepted)
        return;
    const PaperTable table = choice.IsLastRun() ? AnswersPaper(parts.lastRun, About())
                                                : ListPaper(m_list, choice.Rows(), About());
    if (choice.Chosen() == OutputForm::Pdf)
        SavePdf(table);
    else
        PrintOut(table);
}

void ListFiles::SavePdf(const PaperTable &table)
{
    constexpr auto Title = "印刷／PDF";
    const QString path = AskFile(Title, true, "PDF (*.pdf)", "pdf");
    if (path.isEmpty())
        return;
    QSaveFile file(path);
    bool isPrinted = file.open(QIODevice::WriteOnly);
    bool isStopped = false;
    if (isPrinted) {
        const Hourglass hourglass;
        LongWork work(m_showStatus, "印刷しています…", table.rows);
        QPdfWriter writer(&file);
        writer.setTitle(table.title);
        SetUpPage(writer);
        isPrinted = PrintTable(table, writer, [&] { return !(isStopped |= !work.Step()); });
    }
    if (isStopped)
        m_showStatus("印刷を中止しました");
    else if (!isPrinted || !file.commit())
        Complain(Title, path, RuntimeError::Description(RuntimeError::OfFile(file)));
    else
        TellWritten(path, table.rows);
}

void ListFiles::PrintOut(const PaperTable &table)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(table.title);
    SetUpPage(printer);
    QPrintDialog dialog(&printer, &m_screen);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
    if (dialog.exec() != QDialog::Accepted)
        return;
    bool isStopped = false;
    const Hourglass hourglass;
    LongWork work(m_showStatus, "印刷しています…", table.rows);
    const bool isPrinted = PrintTable(table, printer, [&] { return !(isStopped |= !work.Step()); });
    if (isStopped)
        printer.abort();
    m_showStatus(isStopped ? "印刷を中止しました" : isPrinted ? "印刷しました" : "印刷できません");
}

std::optional<SheetPlan> ListFiles::Import()
{
    constexpr auto Title = "CSV取込";
    const QString path = AskFile(Title, false, "CSV (*.csv *.txt);;すべて (*)", "csv");
    if (path.isEmpty())
        return std::nullopt;
    SheetPlan plan;
    QString fault = "ファイルを読めません";
    {
        const Hourglass hourglass;
        QString systemError;
        if (const auto bytes = SheetBytes(path, systemError)) {
            const Sheet sheet = ReadSheet(*bytes);
            fault = FaultText(sheet.fault);
            plan = PlanSheet(sheet, m_list);
        }
    }
    if (!fault.isEmpty()) {
        Complain(Title, path, fault);
        return std::nullopt;
    }
    qCInfo(LogList).noquote() << QString(
                                     "取込: %1、変更 %2、分納 %3、変更なし %4、取り込めない行 %5")
                                     .arg(OneLine(path))
                                     .arg(plan.changes.size())
                                     .arg(plan.splits.size())
                                     .arg(plan.unchanged)
                                     .arg(plan.refused.size());
    SheetImport shown(QFileInfo(path).fileName(), plan, m_list, &m_screen);
    if (shown.exec() != QDialog::Accepted)
        return std::nullopt;
    return plan;
}
