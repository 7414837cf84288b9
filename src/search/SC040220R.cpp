#include "search/SC040220R.h"

#include "search/PickerLists.h"
#include "ui_SC040220R.h"

SC040220R::SC040220R(ProgramState &state, QWidget *parent)
    : Picker(state, state.pickedProduct, parent)
    , m_ui(std::make_unique<Ui::SC040220R>())
{
    m_ui->setupUi(this);
    Bind(m_ui->spdPrdt, m_ui->cmdSure, m_ui->cmdEnd, {{"商品ｺｰﾄﾞ", 25}, {"商品名", 40}});
}

SC040220R::~SC040220R() = default;

int SC040220R::Fill(bDAO &db, const PickedCode &picked, SpreadX &grid)
{
    return FillProducts(db, picked, grid);
}
