#include "answerlist/ListOutput.h"

#include "ui_ListOutput.h"
#include "util/Decimal.h"

#include <algorithm>

namespace {

/// The option of each form.
constexpr std::pair<OutputForm, QRadioButton * Ui::ListOutput::*> FormOptions[] = {
    {OutputForm::CsvUtf8, &Ui::ListOutput::optCsv},
    {OutputForm::CsvShiftJis, &Ui::ListOutput::optCsvShiftJis},
    {OutputForm::Xlsx, &Ui::ListOutput::optXlsx},
    {OutputForm::Printer, &Ui::ListOutput::optPrinter},
    {OutputForm::Pdf, &Ui::ListOutput::optPdf},
};

} // namespace

ListOutput::ListOutput(const ListParts &parts, const std::vector<OutputForm> &forms,
                       QWidget *parent)
    : Form(parent)
    , m_ui(std::make_unique<Ui::ListOutput>())
    , m_parts(parts)
{
    m_ui->setupUi(this);
    SetEscapeButton(m_ui->cmdExit);
    SetMainButton(m_ui->cmdOutput);
    SetThemeIcon(*m_ui->cmdExit, {"go-previous"});
    Offer(*m_ui->optShown, parts.shown.Count());
    Offer(*m_ui->optSelected, parts.selected.Count());
    Offer(*m_ui->optLastRun, int(parts.lastRun.size()));
    const auto isOffered = [&](OutputForm form) { return std::ranges::count(forms, form) > 0; };
    m_ui->optLastRun->setVisible(isOffered(OutputForm::Pdf)); // to keep, not to go on working on
    QRadioButton *const rows = parts.selected.IsEmpty() ? m_ui->optShown : m_ui->optSelected;
    rows->setChecked(true);
    rows->setFocus();
    for (const auto &[form, option] : FormOptions) {
        ((*m_ui).*option)->setVisible(isOffered(form));
        ((*m_ui).*option)->setChecked(form == forms.front());
    }
    connect(m_ui->cmdOutput, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_ui->cmdExit, &QPushButton::clicked, this, &QDialog::reject);
}

ListOutput::~ListOutput() = default;

void ListOutput::Offer(QRadioButton &option, int rows)
{
    option.setText(QString("%1　%2 行").arg(option.text(), Decimal(rows).ToFixed(0, true)));
    option.setEnabled(rows > 0);
}

bool ListOutput::IsLastRun() const
{
    return m_ui->optLastRun->isChecked();
}

const RowSelection &ListOutput::Rows() const
{
    return m_ui->optSelected->isChecked() ? m_parts.selected : m_parts.shown;
}

OutputForm ListOutput::Chosen() const
{
    const auto chosen = std::ranges::find_if(
        FormOptions, [this](const auto &form) { return ((*m_ui).*form.second)->isChecked(); });
    return chosen->first;
}
