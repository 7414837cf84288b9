#pragma once

#include <QString>

class QLineEdit;

/// How the cells of a column are typed.
class CellInput
{
public:
    virtual ~CellInput() = default;

    /// Gives the cell's editor its typing rules.
    virtual void Prepare(QLineEdit &editor) const = 0;

    /// The text to begin an edit with, from the text that the cell shows.
    virtual QString ToTyped(const QString &shown) const = 0;

    /// The text to show for a typed one. False, its message shown to the operator, when the typed
    /// text is not accepted; the cell then stays in edit.
    virtual bool ToShown(const QString &typed, QString &shown) const = 0;

    /// The text to begin with when an edit is started by the key "."; empty: the key is typed as it
    /// is.
    virtual QString PointPrefix() const { return {}; }
};

/// A date: typed "YYMMDD", shown "YY/MM/DD", may be empty. Message 8 for one the calendar lacks.
class DateCellInput : public CellInput
{
public:
    void Prepare(QLineEdit &editor) const override;
    QString ToTyped(const QString &shown) const override;
    bool ToShown(const QString &typed, QString &shown) const override;
};

/// A quantity of the digit spec "9.3": typed without separators, shown "#,##0.000". Message 9 for a
/// text that is no such number. An emptied cell shows 0.
class QuantityCellInput : public CellInput
{
public:
    void Prepare(QLineEdit &editor) const override;
    QString ToTyped(const QString &shown) const override;
    bool ToShown(const QString &typed, QString &shown) const override;
    QString PointPrefix() const override { return "0"; }
};
