#pragma once

#include "data/ProgramState.h"
#include "forms/Form.h"
#include "grid/SpreadX.h"

#include <QElapsedTimer>
#include <vector>

class SpreadGrid;

/// A list to pick a code and its name from. They come in through the program's state and the picked
/// ones go back through it; closing without a pick leaves them as they came. Typing goes to the
/// first row that begins with what is typed; Home and End to the first and the last one.
class Picker : public Form
{
    Q_OBJECT

public:
    /// Fills the list and shows it modally; without any row, message 13 takes its place. True when
    /// the operator picked a row.
    bool Pick();

protected:
    struct Column
    {
        QString heading;
        int halfWidths; ///< of its longest text
    };

    Picker(ProgramState &state, PickedCode &picked, QWidget *parent);

    /// Binds the form's controls: code and name are the first two columns.
    void Bind(SpreadGrid *grid, QAbstractButton *confirm, QAbstractButton *close,
              const std::vector<Column> &columns);

    /// Adds the rows; returns the one to begin on, 0 when there is none, ListNotRead.
    virtual int Fill(bDAO &db, const PickedCode &picked, SpreadX &grid) = 0;

    bool eventFilter(QObject *object, QEvent *event) override;

    void changeEvent(QEvent *event) override;

private:
    void LayOutColumns();
    void Confirm();
    void JumpTo(const QString &typed);

    ProgramState &m_state;
    PickedCode &m_picked;
    SpreadX m_grid;
    std::vector<Column> m_columns;
    QString m_typed; ///< the keys that came quickly one after the other
    QElapsedTimer m_sinceKey;
};
