#include "app/CompanyLoading.h"

#include "data/bDAO.h"
#include "platform/System.h"
#include "util/VbText.h"

namespace {

struct TextColumn
{
    const char *name;
    QString CompanyRecord::*member;
    int width;
};

struct WholeColumn
{
    const char *name;
    int CompanyRecord::*member;
};

struct NumberColumn
{
    const char *name;
    double CompanyRecord::*member;
};

constexpr TextColumn TextColumns[] = {
    {"CoCD", &CompanyRecord::CoCD, 12},
    {"CoName", &CompanyRecord::CoName, 20},
    {"PostCD", &CompanyRecord::PostCD, 8},
    {"Address", &CompanyRecord::Address, 100},
    {"TEL", &CompanyRecord::TEL, 12},
    {"FAX", &CompanyRecord::FAX, 12},
    {"DpoMD_S", &CompanyRecord::DpoMD_S, 8},
    {"DpoMD_E", &CompanyRecord::DpoMD_E, 8},
    {"DpoYM_S", &CompanyRecord::DpoYM_S, 8},
    {"DpoYM_E", &CompanyRecord::DpoYM_E, 8},
    {"LastMonthDate", &CompanyRecord::LastMonthDate, 8},
    {"AskDenNo", &CompanyRecord::AskDenNo, 8},
    {"SaveDir", &CompanyRecord::SaveDir, 128},
    {"DefCustCD", &CompanyRecord::DefCustCD, 12},
    {"UpdPGName", &CompanyRecord::UpdPGName, 8},
    {"UpdDate", &CompanyRecord::UpdDate, 8},
    {"UpdTime", &CompanyRecord::UpdTime, 6},
};

constexpr WholeColumn WholeColumns[] = {
    {"CloseDay", &CompanyRecord::CloseDay},
    {"PayMonthKBN", &CompanyRecord::PayMonthKBN},
    {"DpoYM", &CompanyRecord::DpoYM},
    {"SaveBackNo", &CompanyRecord::SaveBackNo},
    {"HinCDConvKBN", &CompanyRecord::HinCDConvKBN},
    {"AccBikoKBN", &CompanyRecord::AccBikoKBN},
    {"DpoFlg", &CompanyRecord::DpoFlg},
};

constexpr NumberColumn NumberColumns[] = {
    {"TaxPer", &CompanyRecord::TaxPer},     {"AccDenNo", &CompanyRecord::AccDenNo},
    {"OdrDenNo", &CompanyRecord::OdrDenNo}, {"AvlDenNo", &CompanyRecord::AvlDenNo},
    {"ShpDenNo", &CompanyRecord::ShpDenNo}, {"SalDenNo", &CompanyRecord::SalDenNo},
    {"RptDenNo", &CompanyRecord::RptDenNo}, {"PayDenNo", &CompanyRecord::PayDenNo},
};

CompanyRecord BlankCompany()
{
    CompanyRecord company;
    for (const TextColumn &column : TextColumns)
        company.*column.member = QString(column.width, ' ');
    return company;
}

} // namespace

bool LoadCompany(bDAO &db, const QString &executableName, CompanyRecord &company)
{
    const auto rows = db.OpenRS("Select TOP 1 * From TLMT0010;");
    company = BlankCompany();
    if (db.IsEOF(rows.get())) {
        // The suite's company master maintenance starts without a row, to enter it.
        if (executableName.compare("TL040101", Qt::CaseInsensitive) != 0)
            return false;
        QString folder;
        if (RegReadText("HKEY_LOCAL_MACHINE", "SOFTWARE\\NEROVA\\QUILLAN", "AppFolder", folder))
            company.SaveDir = FixedText(folder, int(company.SaveDir.size()));
        return true;
    }
    // A column that can't be read leaves its field blank or 0.
    const auto field = [&](const char *name) { return rows->FieldIndex(QString(name)); };
    for (const TextColumn &column : TextColumns)
        company.*column.member = FixedText(rows->Text(field(column.name)), column.width);
    for (const WholeColumn &column : WholeColumns)
        company.*column.member = IntVal(rows->Text(field(column.name)));
    for (const NumberColumn &column : NumberColumns)
        company.*column.member = rows->Number(field(column.name));
    // The suite has always kept the closing day here; nothing reads the time of the record.
    company.UpdTime = FixedText(QString::number(company.CloseDay), int(company.UpdTime.size()));
    db.CloseRS(rows.get());
    return true;
}
