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

    /// Whether a typed text can stand. False, its message shown to the operator, keeps the cell in
    /// edit.
    virtual bool Accepts(const QString &typed) const = 0;

    /// The text to begin with when an edit is started by the key "."; empty: the key is typed as it
    /// is.
    virtual QString PointPrefix() const { return {}; }
};

/// A date, typed "YYMMDD" (or given as it is shown); may be empty. Message 8 for one the calendar
/// lacks.
class DateCellInput : public CellInput
{
public:
    void Prepare(QLineEdit &editor) const override;
    bool Accepts(const QString &typed) const override;
};

/// A quantity of the digit spec "9.3", typed without separators. Message 9 for a text that is no
/// such number; an emptied cell is 0.
class QuantityCellInput : public CellInput
{
public:
    void Prepare(QLineEdit &editor) const override;
    bool Accepts(const QString &typed) const override;
    QString PointPrefix() const override { return "0"; }
};
