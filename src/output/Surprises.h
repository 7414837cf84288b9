#pragma once

#include "lines/LineList.h"
#include "lines/RowSelection.h"
#include "platform/LongWork.h"

#include <QStringList>
#include <deque>
#include <map>
#include <unordered_set>

class bDAO;

/// What a run would send or overwrite without the operator having seen it, found by reading the
/// orders at work once more and asked about in one box, before anything is written.
class Surprises
{
public:
    Surprises(bDAO &db, LineList &list, const RowSelection &selected);

    /// True when the run may go on: there is nothing to ask about, or the operator has said yes.
    /// What he has agreed to is then no longer a surprise: lines changed elsewhere count as seen;
    /// where they are changed here as well, the list's answer is to overwrite the other one. False
    /// after No, a stop, or a database error, which has been shown.
    bool Confirm(const ShowStatusText &showStatus = {});

    /// True when an order, read anew within its transaction, is as the list shows it and as the
    /// operator has agreed to: nobody has changed it since.
    bool IsAsAgreed(qint64 accNo, const LineList &reading) const;

private:
    /// One kind of surprise: how many there are, and the order numbers to name.
    struct Finding
    {
        int count = 0;
        QStringList orders;
        bool hasMoreOrders = false;

        void Add(const QString &orderNo, int more = 1);
    };
    enum Kind { Unselected, SentAgain, Unseen, ChangedElsewhere, MoreThanOpen, Past, Kinds };

    bool Read(const ShowStatusText &showStatus);
    void LookAtSelection();
    void LookAt(qint64 accNo, LineList &reading);
    void LookAtRecord(qint64 accNo, const LineList &reading);
    void TakeReadings();
    bool TakesPart(int row) const;
    bool KeepsAnswer(int row, const Line &reading) const;
    QString Question() const;

    /// What the record of an order will hold of one line, and whether it has been sent just so.
    struct Outgoing
    {
        const Line *line; ///< as read
        Answer answer;    ///< as it will be stored
        bool isSentAlready;
    };
    std::vector<Outgoing> OutgoingOf(qint64 accNo, const LineList &reading) const;

    struct Changed
    {
        int row;
        const Line *reading;
        const LineList *readings;
    };

    bDAO &m_db;
    LineList &m_list;
    const RowSelection &m_selected;
    std::unordered_set<qint64> m_answered; ///< orders that are to be answered
    Finding m_findings[Kinds];
    std::deque<LineList> m_readings; ///< those that lines changed elsewhere stand in
    std::vector<Changed> m_changed;
    std::map<LineKey, Answer> m_unseen; ///< lines that the list does not show, as agreed to
};
