#include "tldb/TableWriter.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"

std::unique_ptr<RowLoader> LoadSystemRows(Database &database, const char *table,
                                          const QStringList &columns, const RowStamp &stamp)
{
    const TableDefinition *definition = FindTable(table);
    if (!definition)
        throw DaoErrors::Make(DaoErrors::ItemNotFound, "tldb", table);
    QStringList all = columns;
    for (const ColumnDefinition &column : definition->columns)
        if (!columns.contains(column.name))
            all += column.name;
    if (all.size() != qsizetype(definition->columns.size()))
        throw DaoErrors::Make(DaoErrors::ItemNotFound, "tldb", columns.join(", "));
    auto loader = database.Engine().LoadRows(table, all);
    for (qsizetype at = columns.size(); at < all.size(); ++at) {
        const QString &name = all[at];
        if (FindColumn(*definition, name)->IsText())
            loader->Bind(int(at), name == "UpdPGName" ? stamp.program
                                  : name == "UpdDate" ? stamp.date
                                  : name == "UpdTime" ? stamp.time
                                                      : QString());
        else
            loader->Bind(int(at), qint64(0));
    }
    return loader;
}
