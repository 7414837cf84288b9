#include "search/SC040230R.h"

#include "search/PickerLists.h"
#include "ui_SC040230R.h"

SC040230R::SC040230R(ProgramState &state, QWidget *parent)
    : Picker(state, state.pickedCustomer, parent)
    , m_ui(std::make_unique<Ui::SC040230R>())
{
    m_ui->setupUi(this);
    Bind(m_ui->spdTokui, m_ui->cmdKakute, m_ui->cmdEnd,
         {{"得意先ｺｰﾄﾞ", 12}, {"得意先名", 40}, {"TEL", 12}});
}

SC040230R::~SC040230R() = default;

int SC040230R::Fill(bDAO &db, const PickedCode &picked, SpreadX &grid)
{
    return FillCustomers(db, picked, grid);
}
