#pragma once

#include <QAbstractTableModel>
#include <QColor>
#include <QStringList>
#include <optional>
#include <vector>

/// How one cell looks and behaves. Equal rows share one set of styles.
struct CellStyle
{
    std::optional<QRgb> foreColor;
    std::optional<QRgb> backColor;
    bool isLocked = false;
    std::optional<QStringList> comboEntries;

    bool operator==(const CellStyle &) const = default;
};

/// The grid's texts and styles. Rows and columns count from 1 here; Qt's own routines count from 0.
///
/// A row is kept as one text, its cells joined by tabs, so that a million rows need little more
/// than their characters. While notification is off, appended rows and changed cells are collected
/// and told to the views in one piece when it is switched on again.
class SpreadModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    int ColumnCount() const { return int(m_headings.size()); }
    void SetColumnCount(int count);
    int RowCount() const { return int(m_rows.size()); }

    /// Adds empty rows, or removes rows, at the end.
    void SetRowCount(int count);

    /// Moves the rows from `row` on down by one; the last row falls off, `row` is empty.
    void InsertRow(int row);

    /// Moves the rows below up; as many empty rows come in at the end.
    void DeleteRows(int firstRow, int lastRow);

    QString Heading(int column) const { return m_headings[size_t(column - 1)]; }
    void SetHeading(int column, const QString &text);

    QString Text(int column, int row) const;
    QString ShownText(int column, int row) const; ///< its lines separated by LF
    void SetText(int column, int row, const QString &text);

    /// All cells of a row, joined by tabs; cells at the end that are empty may be missing.
    const QString &RowText(int row) const { return m_rows[size_t(row - 1)].text; }
    void SetRowText(int row, const QString &text);

    const CellStyle &Style(int column, int row) const;

    /// Changes the style of every cell of a block.
    template <typename Change>
    void ChangeStyles(int column1, int row1, int column2, int row2, Change &&change);

    void SetNotifying(bool isNotifying);
    bool IsNotifying() const { return m_isNotifying; }

    Qt::Alignment Alignment(int column) const { return m_alignments[size_t(column - 1)]; }
    void SetAlignment(int column, Qt::Alignment alignment)
    {
        m_alignments[size_t(column - 1)] = alignment;
    }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    using RowStyle = std::vector<CellStyle>;

    struct Row
    {
        QString text;
        quint16 style = 0;
    };

    struct TextRange
    {
        qsizetype start;
        qsizetype length;
    };

    static TextRange CellRange(const QString &text, int column);
    quint16 StyleNumber(const RowStyle &style);
    void Announce();
    void NotifyChanged(int firstRow, int lastRow);

    std::vector<QString> m_headings;
    std::vector<Qt::Alignment> m_alignments;
    std::vector<Row> m_rows;
    std::vector<RowStyle> m_styles;
    int m_announcedRows = 0; ///< rows that the views know of; more only while not notifying
    bool m_isNotifying = true;
    int m_firstChanged = 0; ///< rows changed while not notifying; 0: none
    int m_lastChanged = 0;
};

template <typename Change>
void SpreadModel::ChangeStyles(int column1, int row1, int column2, int row2, Change &&change)
{
    // Few different styles stand behind many rows: each is changed once.
    std::vector<int> changed(m_styles.size(), -1);
    for (int row = row1; row <= row2; ++row) {
        const quint16 before = m_rows[size_t(row - 1)].style;
        if (changed[before] < 0) {
            RowStyle style = m_styles[before];
            for (int column = column1; column <= column2; ++column)
                change(style[size_t(column - 1)]);
            changed[before] = StyleNumber(style);
        }
        m_rows[size_t(row - 1)].style = quint16(changed[before]);
    }
    NotifyChanged(row1, row2);
}
