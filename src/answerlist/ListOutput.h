#pragma once

#include "forms/Form.h"
#include "lines/Line.h"
#include "lines/RowSelection.h"

#include <memory>
#include <vector>

class QRadioButton;

namespace Ui {
class ListOutput;
}

enum class OutputForm { CsvUtf8, CsvShiftJis, Xlsx, Printer, Pdf };

/// The parts of the list that may go out, in rows of the list, and the lines of its last run.
struct ListParts
{
    RowSelection shown;
    RowSelection selected;
    const std::vector<Line> &lastRun;
};

/// Asks which part of the list goes out, and in which form. Parts that are empty are not to be
/// chosen; the rows that are selected are the first choice.
class ListOutput : public Form
{
    Q_OBJECT

public:
    /// The first of the forms is the first choice.
    ListOutput(const ListParts &parts, const std::vector<OutputForm> &forms, QWidget *parent);
    ~ListOutput() override;

    // What was chosen.
    const RowSelection &Rows() const; ///< if it is not the last run
    bool IsLastRun() const;
    OutputForm Chosen() const;

private:
    void Offer(QRadioButton &option, int rows);

    std::unique_ptr<Ui::ListOutput> m_ui;
    const ListParts m_parts;
};
