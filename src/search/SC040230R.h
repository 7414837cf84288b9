#pragma once

#include "search/Picker.h"

#include <memory>

namespace Ui {
class SC040230R;
}

/// Lists the customers of the customer master.
class SC040230R : public Picker
{
    Q_OBJECT

public:
    explicit SC040230R(ProgramState &state, QWidget *parent = nullptr);
    ~SC040230R() override;

private:
    int Fill(bDAO &db, const PickedCode &picked, SpreadX &grid) override;

    std::unique_ptr<Ui::SC040230R> m_ui;
};
