#include "search/bTLName.h"

#include "data/bDAO.h"

QString CustomerName(bDAO &db, const QString &code)
{
    const auto rows = db.OpenRS("Select CUSTNAME From TLMT0040 Where CUSTCD = '" + SqlText(code)
                                + "' And DPOFLG = 0;");
    return db.IsEOF(rows.get()) ? QString() : db.NullToTrim(*rows, u"CustName");
}
