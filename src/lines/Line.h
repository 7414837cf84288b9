#pragma once

#include "data/dao/Recordset.h"
#include "lines/LineKey.h"
#include "lines/ListQuery.h"
#include "util/Decimal.h"

#include <QSet>
#include <QString>
#include <optional>

/// An answer to a delivery line.
struct Answer
{
    QString date; ///< stored form, or whatever stands in its place in the database; empty: none
    Decimal quantity;

    bool operator==(const Answer &) const = default;
};

/// A line's number in its list, which no other line of the list ever has; 0: none yet.
using LineId = quint32;

/// What the checks before the output find wrong with a line.
enum class LineError : quint8 { None, NoQuantity, NoDate, NoSum, MoreThanOpen };

/// The operator's text for it; empty for none.
QString ErrorText(LineError error);

/// One delivery line of the list: what its order says, as it was read; the answer as the database
/// has it and, beside it, the answer as it stands now on the list.
///
/// Where nothing is answered yet, the answer begins as the instructed quantity. That proposal and
/// the stored date are what an edit is compared with: a line that nobody has touched, or that was
/// put back, is not changed.
class Line
{
public:
    /// The current row of the list's statement, `row` of the rows (0 is the first), which must
    /// outlive the line. `dates` shares equal date texts among the lines.
    Line(const Recordset &rows, int row, QSet<QString> &dates);

    /// A partial delivery split off from this line: not stored yet, of the same order, with no
    /// date and this quantity to be answered (none where it is negative).
    Line Split(const Decimal &quantity) const;

    const LineKey &Key() const { return m_key; } ///< without a shipment sub-number until stored
    bool IsStored() const { return m_isStored; }
    LineId Id() const { return m_id; }
    void SetId(LineId id) { m_id = id; }
    LineKey Source() const; ///< of a split: the stored line that it was split off from

    // As read. A split has nothing instructed and nothing shipped.
    QString Text(LineField field) const; ///< right-trimmed
    int Whole(LineField field) const;
    Decimal Quantity(LineField field) const;

    QString OrderNo() const { return Text(LineField::OdrNo); }
    QString SpecifiedDate() const { return Text(LineField::LimDate); }   ///< stored form
    Decimal OpenQuantity() const { return Quantity(LineField::ZanVal); } ///< of the whole order
    Decimal Instructed() const { return Quantity(LineField::IndVal); }
    bool IsEdi() const { return Whole(LineField::EDIKBN) == 1; }
    bool IsDefective() const;
    int LinKBN() const { return Whole(LineField::LinKBN); }
    bool NeedsDate() const; ///< the customer takes no answer without a date

    /// Of the customer's answer file, trimmed; nothing for one who gets no records.
    std::optional<QString> OutputPath() const;

    bool IsShipped() const;
    bool MayBeAnswered() const; ///< not shipped or beyond: the record holds it
    bool MayBeMarked() const;   ///< of these, only one that is not on its way is marked answered

    const Answer &Stored() const { return m_stored; }
    const Answer &Now() const { return m_now; }
    void SetDate(const QString &storedForm);
    void SetQuantity(const Decimal &quantity);

    /// Puts back an answer as it stood, with its mark: where that is the stored one, there is
    /// nothing left to register. What the checks found is for them to find anew.
    void PutBack(const Answer &answer, bool hasDateMark);

    /// Differs whenever the database's answer has been taken over since: an edit before it can't be
    /// taken back.
    quint16 Revision() const { return m_revision; }

    /// What has become of the line since the list was loaded.
    bool IsRegisteredHere() const { return m_isRegisteredHere; }

    /// True when the answer as it stands is not the one at load or at the last registration, or its
    /// last registration failed.
    bool IsChanged() const;

    /// The answerable rule for an answer to this line: a quantity, and for customers that ask for
    /// it a date.
    bool IsAnswerable(const Answer &answer) const;

    /// Whether the list marks the answered date as another than the specified one. A date that is
    /// set or stored sets the mark.
    bool HasDateMark() const { return m_hasDateMark; }

    /// Whether an answered date, as it is shown, is the specified one.
    bool IsSpecifiedDate(const QString &date) const;

    bool IsAnswered() const { return m_state != State::Open; }
    bool IsOpen() const { return !IsAnswered() && !IsShipped(); }
    bool IsUnregistered() const { return !m_isStored || IsChanged(); }
    bool IsAnsweredHere() const { return m_state == State::AnsweredHere; }

    /// True when this list has output its answer, marked or not.
    bool WasSentHere() const { return m_wasSentHere; }

    /// True when what was last stored has not been output since, as far as this list knows.
    bool IsStoredSinceAnswered() const { return m_isStoredSinceAnswered; }

    /// True for an answer that was typed or registered here and has not been output since.
    bool IsToBeSent() const
    {
        return IsUnregistered()
               || (m_isRegisteredHere && !IsShipped()
                   && (m_isStoredSinceAnswered || (!m_wasSentHere && !IsAnswered())));
    }

    LineError Error() const { return m_error; }
    void SetError(LineError error) { m_error = error; }

    // What happened to the line in the database.
    void Registered(int shpSubNo); ///< its answer was stored, for a split under this number
    void RegistrationFailed();     ///< it counts as changed until it is registered
    void Answered();               ///< its answer was output, and the line marked if it may be

    /// Its answer was stored elsewhere (in the detail dialog) and is taken over.
    void TakeStored(const Answer &answer);

    /// True when this reading of the same line differs from the one that the list holds in what the
    /// operator saw of it.
    bool IsOtherThan(const Line &reading) const;

    /// Takes another reading of the same line in its place, as somebody else has left it; what this
    /// list has done with it stays known.
    void Reread(const Line &reading);

    /// The same, but the answer as it stands stays: that it overwrites the other one is meant.
    void KeepAnswerOver(const Line &reading);

    /// Takes what the order says from another reading of the line that this split is of.
    void RereadSource(const Line &reading);

private:
    enum class State : quint8 { Open, Answered, AnsweredHere };

    Answer Unchanged() const; ///< what an answer that nobody has touched is
    Decimal ProposedOr(const Decimal &quantity) const;

    LineKey m_key;
    Record m_record;
    Answer m_stored;
    Answer m_now;
    int m_sourceShpSubNo = 0;
    qint16 m_shpSts = 0;
    State m_state = State::Open;
    LineError m_error = LineError::None;
    bool m_isStored : 1 = true;
    bool m_isSplit : 1 = false;
    bool m_isProposed : 1 = false; ///< nothing answered: the instructed quantity stands in
    bool m_hasDateMark : 1 = false;
    bool m_hasFailed : 1 = false;
    bool m_isStoredSinceAnswered : 1 = false;
    bool m_wasSentHere : 1 = false;
    bool m_isRegisteredHere : 1 = false;
    quint16 m_revision = 0;
    LineId m_id = 0;
};
