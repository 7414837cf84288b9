#pragma once

#include "data/ProgramState.h"
#include "lines/Registration.h"
#include "output/AnswerRecord.h"
#include "output/AnswerSql.h"
#include "output/OutputFiles.h"
#include "output/PreOutputChecks.h"
#include "output/Surprises.h"

#include <QStringList>
#include <optional>

class AnswerFile;

/// Turns the answers on the list into records of the customers' answer files and marks their lines
/// answered. One object is one run.
class AnswerCreation
{
public:
    /// `selected` are the rows to answer; those of answered orders leave it. `stamp` is the date
    /// and time that the list screen was loaded at.
    AnswerCreation(bDAO &db, const Files &files, LineList &list, RowSelection &selected,
                   const WriteStamp &stamp, ShowStatusText showStatus);

    /// The whole run: checks, questions, registration, records and marks, summary. Returns the row
    /// that the checks stopped at; 0 when they passed.
    int MakeAnswers();

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
    /// How it went with one order.
    enum class Outcome {
        Answered,
        NoLines,
        TooManyLines,
        FileError,
        NotMarked,
        DatabaseError,
        PathChanged,
        ChangedElsewhere,
    };

    bool AnswerOrders();
    bool AnswerOrder(int row);
    Outcome MakeOrderAnswer(int row, bool &written);
    Outcome AnswerInTransaction(const Line &line, AnswerFile *file, std::optional<QString> &path,
                                bool &written);
    QString AnswerKind(Recordset &lines);
    Outcome FillRecord(Recordset &lines, bool isEdi);
    Outcome PackRecord(AnswerFile &file, const QString &layoutSettings, QByteArray &record);
    Outcome MarkAnswered(qint64 accNo);
    bool KeepInHistory(qint64 accNo, const std::optional<QString> &path);
    void TellWhy(Outcome outcome, const QString &path) const;
    void LogAnswered(int row, bool written, const char *what) const;
    void MarkRowsAnswered(qint64 accNo);
    void ShowSummary() const;
    QString SummaryNotes() const;
    void TellOfReplacedCharacters() const;

    bDAO &m_db;
    OutputFiles m_files;
    LineList &m_list;
    RowSelection &m_selected;
    WriteStamp m_stamp;
    ShowStatusText m_showStatus;
    Surprises m_surprises;
    AnswerRecord m_record;
    AnswerBuffer m_buffer = {};
    bool m_isRecordComplete = true;     ///< no "?" for a character without a code
    std::optional<AnswerTrace> m_trace; ///< for the history; nothing: the database keeps none
    int m_fileError = 0;
    QString m_answeredFile;         ///< of the last order; empty: none
    QStringList m_incompleteOrders; ///< whose records have "?" for characters without a code
    OrdersLeftOut m_leftOut;
    LineList m_stored;               ///< the order at work, as its transaction has read it
    std::vector<int> m_answeredRows; ///< of the orders answered
    int m_ordersDone = 0;
    bool m_isStopped = false;
    Counts m_counts;
};
