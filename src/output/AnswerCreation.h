#pragma once

#include "answerlist/Registration.h"
#include "data/ProgramState.h"
#include "output/AnswerRecord.h"
#include "output/OutputFiles.h"
#include "output/PreOutputChecks.h"

#include <QStringList>

class AnswerList;

/// Turns the answers on the list into records of the customers' answer files and marks their lines
/// answered. One object is one run.
class AnswerCreation
{
public:
    /// `stamp` is the date and time that the list screen was loaded at.
    AnswerCreation(bDAO &db, const Files &files, AnswerList &list, const WriteStamp &stamp,
                   ShowStatusText showStatus);

    /// The whole run: checks, registration, records and marks, summary.
    void MakeAnswers();

    /// The part after the registration: one record for each selected order, and the summary. False
    /// when an order failed; the operator has been told.
    bool RunAnswerCreation();

    struct Counts
    {
        RegistrationCounts registered;
        int participants = 0; ///< rows selected, as the summary calls them
        int lines = 0;        ///< list rows marked answered
        int records = 0;
    };
    const Counts &Count() const { return m_counts; }

private:
    void MakeOrderAnswer(const ListRow &row, bool &ok, bool &written);
    bool FillRecord(Recordset &lines, const ListRow &row);
    bool WriteRecord(const QString &path, const QString &layoutSettings, const QString &orderNo);
    bool MarkAnswered(qint64 accNo);
    void MarkRowsAnswered(qint64 accNo);
    void ShowSummary() const;
    void TellOfReplacedCharacters() const;

    bDAO &m_db;
    OutputFiles m_files;
    AnswerList &m_list;
    WriteStamp m_stamp;
    ShowStatusText m_showStatus;
    AnswerRecord m_record;
    AnswerBuffer m_buffer = {};
    QStringList m_incompleteOrders; ///< whose records have "?" for characters without a code
    Counts m_counts;
};
