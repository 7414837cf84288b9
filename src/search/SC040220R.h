#pragma once

#include "search/Picker.h"

#include <memory>

namespace Ui {
class SC040220R;
}

/// Lists the products of the product master.
class SC040220R : public Picker
{
    Q_OBJECT

public:
    explicit SC040220R(ProgramState &state, QWidget *parent = nullptr);
    ~SC040220R() override;

private:
    int Fill(bDAO &db, const PickedCode &picked, SpreadX &grid) override;

    std::unique_ptr<Ui::SC040220R> m_ui;
};
