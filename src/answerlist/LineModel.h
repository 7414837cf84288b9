#pragma once

#include "lines/LineCounts.h"
#include "lines/LineEdits.h"

#include <QAbstractTableModel>
#include <QRgb>
#include <functional>

/// The colour of the texts of defective goods, on a light background.
inline constexpr QRgb DefectiveColor = qRgb(0x80, 0x00, 0x80);

/// The delivery lines as the answer list shows them: texts, colours and locks of the cells that are
/// looked at, made from the lines when they are asked for. The row's heading carries the line's
/// number in the list, and what has become of it since the list was loaded.
///
/// It may show open lines only. Its rows are then fewer than the list's; what a view says in its
/// rows is translated by LineRow and its like. All rows count from 1.
class LineModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit LineModel(LineEdits &edits, QObject *parent = nullptr)
        : QAbstractTableModel(parent)
        , m_edits(edits)
    {
    }

    /// How a tooltip tells of a stored line's last answer. It is read when it is asked for.
    using AnswerTip = std::function<QString(const LineKey &key)>;
    void SetAnswerTip(AnswerTip tip) { m_answerTip = std::move(tip); }

    // What happens to the list, told to the views.

    void Empty();   ///< before the list is filled: nothing of it is shown until then
    void Filled();  ///< it holds other lines, or others are to be shown
    void Changed(); ///< its lines have changed, none came or went

    /// A line of the list comes below a shown one, by `insert`.
    template <typename Insert>
    void InsertBelow(int lineRow, Insert &&insert)
    {
        const int shownRow = ShownRow(lineRow);
        beginInsertRows({}, shownRow, shownRow);
        insert();
        ShowInserted(lineRow, shownRow);
        endInsertRows();
    }
    void Remove(int lineRow); ///< takes a shown line out of the list

    /// Whether lines that are answered or shipped are left out.
    bool ShowsOpenOnly() const { return m_showsOpenOnly; }
    void ShowOpenOnly(bool isOn) { m_showsOpenOnly = isOn; } ///< seen with the next Filled

    int LineRow(int shownRow) const; ///< of the list; 0 for 0
    int ShownRow(int lineRow) const; ///< 0 for a line that is not shown

    /// The row of the line, or of the next one that is shown, else of the last; 0: nothing is.
    int ShownRowFrom(int lineRow) const;
    RowSelection LineRows(const RowSelection &shownRows) const;
    RowSelection ShownRows(const RowSelection &lineRows) const; ///< without what is not shown

    const LineList &List() const { return m_edits.List(); }
    const LineCounts &Counts(); ///< of all lines of the list, as of today

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    /// Takes a typed quantity or date. False for a text that is none, or the one that stands there.
    bool setData(const QModelIndex &index, const QVariant &typed, int role) override;

signals:
    void Edited(int lineRow); ///< the operator has changed its answer

private:
    const Line &LineAt(int section) const { return m_edits.List().At(LineRow(section + 1)); }
    void ShowInserted(int lineRow, int shownRow);

    LineEdits &m_edits;
    bool m_showsOpenOnly = false;
    std::vector<int> m_lineRows; ///< that are shown, in order, when only open ones are
    AnswerTip m_answerTip;
    int m_shownRows = 0;
    LineCounts m_counts;
    QString m_countedDay; ///< stored form; empty: to be counted anew
};
