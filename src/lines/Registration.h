#pragma once

#include "lines/LineList.h"
#include "lines/LineSql.h"
#include "lines/OrdersLeftOut.h"
#include "lines/RowSelection.h"
#include "platform/LongWork.h"

#include <functional>
#include <vector>

class bDAO;

/// The status text while the list is registered.
inline constexpr auto RegistrationText = "画面の内容を登録しています…";

/// Whether the registration writes a row, and as what.
enum class RowKind {
    NotWritten,
    Selected, ///< a stored line written only because it is selected
    NewLine,  ///< a split line that is not stored yet
    Changed,  ///< a stored line with another date or quantity
};

RowKind DecideRow(const Line &line, bool isSelected);

/// How many lines a registration wrote.
struct RegistrationCounts
{
    int added = 0;
    int changed = 0;
};

/// Writes what the list holds and the database does not, one transaction per order: all of an
/// order's lines or none, wherever in the list they stand. A line counts as unchanged from the
/// commit of its order on. An order that somebody else has changed since its lines were read is
/// left out: its rows then show what is stored. Any other failure ends the registration.
class Registration
{
public:
    /// True when an order, read anew within its transaction, may be written.
    using IsAsAgreed = std::function<bool(qint64 accNo, const LineList &stored)>;

    Registration(bDAO &db, LineList &list, const RowSelection &selected,
                 IsAsAgreed isAsAgreed = {});

    /// False after a failure: the failing order is rolled back and message 15 has been shown. The
    /// orders before it are registered.
    bool RegisterAnswers(RegistrationCounts &counts, const ShowStatusText &showStatus = {});

    /// True when the operator has stopped it: the orders after some are not registered.
    bool IsStopped() const { return m_isStopped; }

    /// The orders left out, of which nobody has been told yet.
    const OrdersLeftOut &LeftOut() const { return m_leftOut; }

private:
    enum class Result {
        Written,
        DatabaseError,
        LineMissing,
        NoNumberLeft,
        NotANumber,
        ChangedElsewhere,
    };
    struct WrittenRow
    {
        int row;
        RowKind kind;
        int shpSubNo;
    };

    bool RegisterOrder(const std::vector<int> &rows, RegistrationCounts &counts);
    Result WriteOrder(const std::vector<int> &rows);
    Result WriteRow(int row, RowKind kind);
    Result WriteStoredLine(const Line &line);
    Result InsertLine(const Line &line, int &shpSubNo);
    std::optional<WrittenAnswer> AnswerFor(const Recordset &stored, const Line &line,
                                           bool isShipped);
    RowKind Decide(int row) const;
    static QString ReasonFor(Result result);
    bool Fail(Result result, const QString &orderNo);

    bDAO &m_db;
    LineList &m_list;
    const RowSelection &m_selected;
    WriteStamp m_stamp;
    std::vector<WrittenRow> m_written; ///< of the order at work
    int m_failingRow = 0;              ///< 0: nothing was being written
    bool m_isStopped = false;
    OrdersLeftOut m_leftOut;
    IsAsAgreed m_isAsAgreed;
};
