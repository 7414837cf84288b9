#include "BenchDatabase.h"

#include "app/Main.h"
#include "data/Tables.h"
#include "data/dao/Database.h"
#include "output/OutputFolders.h"
#include "tldb/Commands.h"
#include "tldb/NewDatabase.h"

#include <QFile>
#include <QTextStream>
#include <stdexcept>

namespace {

/// No code is the beginning of another, as conditions search by prefix.
QString CustomerCode(int size)
{
    return QString("B%1").arg(size, 8, 10, QChar('0'));
}

/// Gives the first lines not given yet, and their orders, to a new customer; all of them open, with
/// one line an order, so that every line can be answered.
void MakeCustomer(Database &database, int size, qint64 &firstAccNo)
{
    const QString code = CustomerCode(size);
    database.ExecuteNative(
        QString("INSERT INTO TLMT0040 SELECT '%1', CustName, TEL, 1, VanCD, 1,"
                " 'C:\\EDI\\OUT\\%1\\ANS.TXT', 1, AnsInfPath, AnsInfKBN, ShpInfPath,"
                " ShpInfKBN, RsvPath1, RsvInfKBN1, RsvPath2, RsvInfKBN2, NohinPath,"
                " NohinKBN, HenpVerPath, 0, UpdPGName, UpdDate, UpdTime"
                " FROM TLMT0040 WHERE CustCD = 'C0001'")
            .arg(code));
    const auto last = database.OpenRecordset(
        QString("SELECT MAX(AccNo) FROM (SELECT DISTINCT AccNo FROM TLSP0010 WHERE AccNo >= %1"
                " ORDER BY AccNo LIMIT %2)")
            .arg(firstAccNo)
            .arg(size));
    const QString range = QString("AccNo BETWEEN %1 AND %2").arg(firstAccNo).arg(last->Text(0));
    database.ExecuteNative(
        "DELETE FROM TLSP0010 WHERE " + range
        + " AND (AccSubNo, ShpSubNo) <> (SELECT AccSubNo, ShpSubNo FROM TLSP0010 F"
          " WHERE F.AccNo = TLSP0010.AccNo LIMIT 1)");
    database.ExecuteNative(
        "UPDATE TLSP0010 SET CustCD = '" + code
        + "', DenKBN = 2, ShpSts = 1, AnsLimUmu = 0, AnsVal = 0, AnsLimDate = '',"
          " IndVal = AccVal, DpoFlg = 0 WHERE "
        + range);
    database.ExecuteNative("UPDATE TLAC0010 SET CustCD = '" + code
                           + "', ShpSts = 1, EDIKBN = 0, DpoFlg = 0, ZanVal = (SELECT AccVal FROM"
                             " TLSP0010 L WHERE L.AccNo = TLAC0010.AccNo) WHERE "
                           + range);
    firstAccNo = last->Text(0).toLongLong() + 1;
}

} // namespace

BenchDatabase::BenchDatabase(const QString &folder, int lines,
                             const std::vector<int> &customerSizes)
    : m_folder(folder + QString("/lines-%1").arg(lines))
{
    // Data that was made with other customers is of no use.
    for (const int size : customerSizes)
        m_folder += QString("-%1").arg(size);
    QTextStream out(stderr);
    if (QFile::exists(DatabasePath(m_folder))) {
        RunTool({"upgrade", m_folder}, out, out); // it may be from before there was a history
        return;
    }
    if (RunTool({"demo", m_folder, "--lines", QString::number(lines)}, out, out) != ExitCode::Ok)
        throw std::runtime_error("no demo data in " + m_folder.toStdString());
    Database database(DatabasePath(m_folder), false, ConnectText);
    database.ExecuteNative("BEGIN");
    qint64 firstAccNo = 0;
    for (const int size : customerSizes)
        MakeCustomer(database, size, firstAccNo);
    database.ExecuteNative("COMMIT");
}

SearchConditions BenchDatabase::CustomerOf(int lines)
{
    SearchConditions conditions;
    conditions.customerCode = CustomerCode(lines);
    conditions.dateBasis = "LIMDATE";
    return conditions;
}

void BenchDatabase::Open(const QString &folder, ProgramState &state)
{
    if (!InitApp(state, folder) || !CheckAnswerOutputPaths(state.db, state.files))
        throw std::runtime_error("the database or its output folders can't be used");
}
