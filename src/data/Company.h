#pragma once

#include <QString>

/// The one row of the company master. Texts are blank-padded to the width of their column.
struct CompanyRecord
{
    QString CoCD, CoName, PostCD, Address, TEL, FAX;
    QString DpoMD_S, DpoMD_E, DpoYM_S, DpoYM_E, LastMonthDate;
    int CloseDay = 0;
    int PayMonthKBN = 0;
    double TaxPer = 0;
    int DpoYM = 0;
    double AccDenNo = 0, OdrDenNo = 0, AvlDenNo = 0, ShpDenNo = 0, SalDenNo = 0, RptDenNo = 0,
           PayDenNo = 0;
    QString AskDenNo, SaveDir;
    int SaveBackNo = 0;
    QString DefCustCD;
    int HinCDConvKBN = 0;
    int AccBikoKBN = 0;
    int DpoFlg = 0;
    QString UpdPGName, UpdDate, UpdTime;
};
