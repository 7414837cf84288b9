#include "data/dao/Connection.h"

QStringList Connection::FirstColumn(const QString &sql)
{
    RowStore store;
    Read(sql, store);
    QStringList texts;
    for (const char *row : store.rows)
        texts += ReadValue(row).Text();
    return texts;
}

QString QuotedName(QString name)
{
    return '"' + name.replace('"', "\"\"") + '"';
}
