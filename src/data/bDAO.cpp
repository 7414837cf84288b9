#include "data/bDAO.h"

#include "data/Tables.h"
#include "platform/Log.h"
#include "util/VbText.h"

namespace {

/// Longer than another's lock is waited for.
constexpr int MostSilenceMs = 30'000;

/// A statement as the operator is shown it: every "|" stands inside a literal and is written as a
/// character joined in, which means the same.
QString EscapedPipes(QString sql)
{
    return sql.replace("|", "' & Chr(124) & '");
}

QString LogText(const DaoError &error)
{
    return QString("エラー %1: %2（%3）")
        .arg(QString::number(error.number), error.description, error.source);
}

int FieldOf(const Recordset &rows, QStringView column)
{
    const int field = rows.FieldIndex(column);
    if (field < 0)
        throw DaoErrors::Make(DaoErrors::ItemNotFound, "DAO.Recordset", column.toString());
    return field;
}

} // namespace

template <typename Result, typename Operation>
Result bDAO::Guarded(Result onError, Operation &&operation)
{
    try {
        return operation();
    } catch (const DaoError &error) {
        if (error.number != DaoErrors::Cancelled) {
            // At once: the box may have to wait for the end of a transaction.
            qCWarning(LogDatabase).noquote() << LogText(error);
            m_engine.Errors = {error};
            ShowDBErrors();
        }
        return onError;
    }
}

bool bDAO::OpenDB(const Files &files, const QString &path, bool isReadOnly, const QString &connect)
{
    CloseDB();
    return Guarded(false, [&] {
        m_database = &m_workspace->OpenDatabase(files.LocalPath(path), isReadOnly, connect);
        m_database->LimitSilence(MostSilenceMs);
        m_isOpen = true;
        qCInfo(LogDatabase).noquote() << "データベースを開きました: " + files.LocalPath(path);
        return true;
    });
}

bool bDAO::CloseDB()
{
    m_workspace->CloseDatabase();
    m_isOpen = false;
    m_database = nullptr;
    EndTransaction();
    return true;
}

std::unique_ptr<Recordset> bDAO::OpenRS(const QString &sql, bool)
{
    return Guarded(std::unique_ptr<Recordset>(), [&] { return OpenRows(sql); });
}

std::unique_ptr<Recordset> bDAO::TryOpenRS(const QString &sql)
{
    try {
        return OpenRows(sql);
    } catch (const DaoError &error) {
        qCInfo(LogDatabase).noquote() << LogText(error); // what is read may be missing
        return nullptr;
    }
}

bool bDAO::HasTable(const QString &name)
{
    return Guarded(true, [&] {
        try {
            OpenRows("SELECT 1 FROM " + name + " WHERE 1 = 0");
            return true;
        } catch (const DaoError &error) {
            if (error.number == DaoErrors::SyntaxError || error.number == DaoErrors::ItemNotFound)
                return false;
            throw;
        }
    });
}

std::unique_ptr<Recordset> bDAO::OpenRows(const QString &sql)
{
    qCDebug(LogDatabase).noquote() << sql;
    if (!m_database)
        throw DaoErrors::Make(DaoErrors::ObjectInvalid, "DAO.Database");
    return m_database->OpenRecordset(sql);
}

void bDAO::SetProgress(std::function<bool()> goOn)
{
    if (m_database)
        m_database->SetProgress(std::move(goOn));
}

bool bDAO::DBExecute(const QString &sql)
{
    qCDebug(LogDatabase).noquote() << WithoutValues(sql);
    return Guarded(false, [&] {
        if (!m_database)
            throw DaoErrors::Make(DaoErrors::ObjectInvalid, "DAO.Database");
        m_database->Execute(sql);
        if (m_database->RecordsAffected() != 0 || sql.section(' ', 0, 0).toUpper() == "DELETE")
            return true;
        Show({"不明なｴﾗｰによりﾃﾞｰﾀﾍﾞｰｽへの更新はｷｬﾝｾﾙされました。", BoxStyle::Critical,
              "DBExecute Routine"});
        Show({EscapedPipes(sql), BoxStyle::OkOnly, "不明なｴﾗｰの原因..."});
        return false;
    });
}

bool bDAO::BeginTrans(bool isExclusive)
{
    return Guarded(false, [&] {
        m_workspace->BeginTrans(isExclusive);
        m_isInTransaction = true;
        return true;
    });
}

bool bDAO::CommitTrans()
{
    return Guarded(false, [&] {
        m_workspace->CommitTrans();
        EndTransaction();
        return true;
    });
}

bool bDAO::Rollback()
{
    const bool isRolledBack = Guarded(false, [&] {
        m_workspace->Rollback();
        return true;
    });
    EndTransaction();
    return isRolledBack;
}

bool bDAO::MoveNext(Recordset &rows)
{
    return Guarded(false, [&] {
        rows.MoveNext();
        return true;
    });
}

bool bDAO::MoveFirst(Recordset &rows)
{
    rows.MoveFirst();
    return true;
}

bool bDAO::MoveLast(Recordset &rows)
{
    rows.MoveLast();
    return true;
}

bool bDAO::IsEOF(const Recordset *rows)
{
    return !rows || rows->IsEof();
}

bool bDAO::CloseRS(Recordset *rows)
{
    return Guarded(false, [&] {
        if (rows)
            rows->Close();
        return true;
    });
}

double bDAO::GetRecordCount(Recordset *rows)
{
    if (!rows)
        return -1;
    if (rows->IsEof())
        return 0;
    rows->MoveFirst();
    return rows->RecordCount();
}

std::vector<int> bDAO::FieldsOf(const Recordset &rows, const QStringList &columns)
{
    return Guarded(std::vector<int>(), [&] {
        std::vector<int> fields;
        for (const QString &column : columns)
            fields.push_back(FieldOf(rows, column));
        return fields;
    });
}

int bDAO::FieldOrError(const Recordset &rows, QStringView column)
{
    return Guarded(-1, [&] { return FieldOf(rows, column); });
}

QString bDAO::NullToTrim(const Recordset &rows, QStringView column)
{
    return Trim(rows.Text(FieldOrError(rows, column)));
}

QString bDAO::NullToRTrim(const Recordset &rows, QStringView column)
{
    return RTrim(rows.Text(FieldOrError(rows, column)));
}

double bDAO::NullToZero(const Recordset &rows, QStringView column)
{
    return rows.Number(FieldOrError(rows, column));
}

bool bDAO::CheckAccessVersion()
{
    const double version = Guarded(0.0, [&] {
        if (!m_database)
            throw DaoErrors::Make(DaoErrors::ObjectInvalid, "DAO.Database");
        try {
            return Val(m_database->Property("AccessVersion"));
        } catch (const DaoError &error) {
            if (error.number == DaoErrors::PropertyNotFound)
                return 0.0;
            throw;
        }
    });
    if (version >= OldestAccessVersion)
        return true;
    Show({"データベースが以前のバージョンのため\r"
          "処理を続行できません。\r"
          "\r"
          "データコンバートで最新のバージョンにするか、\r"
          "データベースを復元するかをして下さい。",
          BoxStyle::Information, "初期設定エラー"});
    return false;
}

void bDAO::ShowDBErrors()
{
    const auto errors = std::exchange(m_engine.Errors, {});
    for (const DaoError &error : errors)
        Show({QString("ｴﾗｰｺｰﾄﾞ：%1\r\nｴﾗｰ内容：%2\r\nｴﾗｰｿｰｽ ：%3")
                  .arg(QString::number(error.number), error.description, error.source),
              BoxStyle::Critical + BoxStyle::SystemModal, "ﾃﾞｰﾀﾍﾞｰｽｱｸｾｽｴﾗｰ"});
}

void bDAO::Show(const MessageBoxRequest &box)
{
    if (m_isInTransaction || m_keepers > 0)
        m_keptBoxes.push_back(box);
    else
        MsgBox(box.text, box.style, box.title);
}

void bDAO::EndTransaction()
{
    m_isInTransaction = false;
    ShowKept();
}

void bDAO::ShowKept()
{
    if (m_isInTransaction || m_keepers > 0)
        return;
    const auto kept = std::exchange(m_keptBoxes, {});
    for (const MessageBoxRequest &box : kept)
        Show(box);
}

bDAO::BoxesKept::~BoxesKept()
{
    --m_db.m_keepers;
    m_db.ShowKept();
}
