#pragma once

#include "answerlist/DeliveryLine.h"
#include "answerlist/ListRow.h"
#include "platform/LongWork.h"

#include <functional>
#include <vector>

class AnswerList;
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

RowKind DecideRow(const AnswerList &list, int row);
RowKind DecideRow(const ListRow &line, bool isSelected);

/// How many lines a registration wrote.
struct RegistrationCounts
{
    int added = 0;
    int changed = 0;
};

/// Writes what the list holds and the database does not, one transaction per order. A row counts as
/// unchanged from the commit of its order on; a failing order leaves all its rows to be written
/// again, the failing row as a line not stored yet.
class Registration
{
public:
    Registration(bDAO &db, AnswerList &list);

    /// False after a failure: the failing order is rolled back and message 15 has been shown.
    bool RegisterAnswers(RegistrationCounts &counts, const ShowStatusText &showStatus = {});

private:
    struct WrittenRow
    {
        int row;
        RowKind kind;
        int shpSubNo;
        QString answeredDate;
        QString quantity;
    };

    bool WriteRow(int row, const ListRow &line, RowKind kind);
    bool WriteStoredLine(const LineKey &key, const ListRow &line);
    bool InsertLine(LineKey &key, const ListRow &line);
    std::optional<LineAnswer> Answer(const Recordset &stored, const ListRow &line, bool isShipped);
    bool Commit(RegistrationCounts &counts);
    bool Fail(const ListRow &line);

    bDAO &m_db;
    AnswerList &m_list;
    WriteStamp m_stamp;
    std::vector<WrittenRow> m_written; ///< since the last commit
};
