#pragma once

#include "data/dao/DBEngine.h"
#include "data/dao/SqlText.h"
#include "platform/Files.h"
#include "platform/MsgBox.h"

#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

/// The one way to the database. Every routine catches the engine's errors, shows them to the
/// operator and returns its failure value; none throws.
///
/// No box waits for the operator while the file is locked: what is to be shown between BeginTrans
/// and the end of the transaction is shown when it has ended.
class bDAO
{
public:
    /// Opens the database file at a path of the system. False after an error.
    bool OpenDB(const Files &files, const QString &path, bool isReadOnly, const QString &connect);
    bool CloseDB();
    bool IsOpen() const { return m_isOpen; }

    /// Opens the rows of a SELECT; nothing after an error. Rows are a copy in either case: a
    /// snapshot and a dynaset differ only in what the original engine would lock while a row is
    /// edited.
    std::unique_ptr<Recordset> OpenRS(const QString &sql, bool isSnapshot = true);

    /// The same without a box after an error: for what the operator has not asked for.
    std::unique_ptr<Recordset> TryOpenRS(const QString &sql);

    /// Whether the database has a table. Not within a transaction, which a server ends when the
    /// answer is No. True after an error, which has been shown: whatever needs the table fails then
    /// rather than going without.
    bool HasTable(const QString &name);

    /// Called again and again while OpenRS runs: False cancels it, which shows no error. It must
    /// not use the database. An empty one ends that.
    void SetProgress(std::function<bool()> goOn);

    /// Runs an action query. An INSERT or UPDATE that changes no row is a failure, shown with the
    /// statement; a DELETE is not. Neither starts nor ends a transaction.
    bool DBExecute(const QString &sql);

    bool BeginTrans(bool isExclusive = false); ///< exclusive: others can't read either
    bool CommitTrans(); ///< one that fails leaves the transaction open, to be rolled back
    bool Rollback();

    /// Whether a transaction has begun and not ended. A caller shows its own boxes outside of it.
    bool IsInTransaction() const { return m_isInTransaction; }

    /// While it lives, boxes are kept outside of a transaction too: for whoever holds something
    /// else that others wait for.
    class BoxesKept
    {
    public:
        explicit BoxesKept(bDAO &db)
            : m_db(db)
        {
            ++m_db.m_keepers;
        }
        ~BoxesKept();
        BoxesKept(const BoxesKept &) = delete;
        BoxesKept &operator=(const BoxesKept &) = delete;

    private:
        bDAO &m_db;
    };

    bool MoveNext(Recordset &rows);
    bool MoveFirst(Recordset &rows);
    bool MoveLast(Recordset &rows);
    bool IsEOF(const Recordset *rows); ///< no recordset counts as its end
    bool CloseRS(Recordset *rows);

    /// The number of rows, the first one current again; 0 at the end, -1 after an error.
    double GetRecordCount(Recordset *rows);

    /// The positions of columns in the rows; empty after an error (an unknown column), which has
    /// been shown.
    std::vector<int> FieldsOf(const Recordset &rows, const QStringList &columns);

    /// A text column of the current row; "" for null. An unknown column shows the error and gives
    /// "".
    QString NullToTrim(const Recordset &rows, QStringView column);
    QString NullToRTrim(const Recordset &rows, QStringView column);

    /// A number column of the current row; 0 for null.
    double NullToZero(const Recordset &rows, QStringView column);

    /// True when the database's format is new enough; shows its own message when not. A database
    /// without the property is too old.
    bool CheckAccessVersion();

    /// Shows one box per entry of the engine's error collection and empties it.
    void ShowDBErrors();

private:
    std::unique_ptr<Recordset> OpenRows(const QString &sql); ///< throws DaoError
    template <typename Result, typename Operation>
    Result Guarded(Result onError, Operation &&operation);
    int FieldOrError(const Recordset &rows, QStringView column);
    void Show(const MessageBoxRequest &box);
    void EndTransaction();
    void ShowKept(); ///< when nothing is held any more

    DBEngine m_engine;
    Workspace *m_workspace = &m_engine.Workspaces(0);
    Database *m_database = nullptr;
    bool m_isOpen = false;
    bool m_isInTransaction = false;
    int m_keepers = 0;                          ///< BoxesKept that live
    std::vector<MessageBoxRequest> m_keptBoxes; ///< of the transaction, or kept for other reasons
};
