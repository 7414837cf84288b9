#pragma once

#include "data/ProgramState.h"
#include "data/Tables.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

/// Customers and products to search for; a product code may be there twice, as in a file without
/// its key.
class MasterFixture : public testing::Test
{
protected:
    MasterFixture()
    {
        const TableDefinition &products = *FindTable("TLMT0020");
        QString table = CreateTableSql(database.Other().Engine(), products.name, products.columns);
        table.remove(QRegularExpression(",\\s*PRIMARY KEY \\([^)]*\\)"));
        database.Run("DROP TABLE TLMT0020; " + table);
        database.Open(state.db);
    }

    void AddCustomer(const char *code, const char *name, int isDeleted = 0)
    {
        database.Insert("TLMT0040", {{"CustCD", code}, {"CustName", name}, {"DpoFlg", isDeleted}});
    }
    void AddProduct(const char *code, const char *name, int isDeleted = 0)
    {
        database.Insert("TLMT0020", {{"AccHinCD", code}, {"HinName", name}, {"DpoFlg", isDeleted}});
    }

    TestDatabase database;
    ProgramState state;
};
