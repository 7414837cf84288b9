#include "BenchWindow.h"
#include "Benches.h"

#include "answerlist/ListLoading.h"
#include "answerlist/ListQuery.h"
#include "data/Tables.h"
#include "data/dao/Database.h"
#include "data/dao/Dialect.h"
#include "grid/SpreadX.h"
#include "search/PickerLists.h"

#include <QTemporaryDir>
#include <algorithm>
#include <cstring>
#include <sqlite3.h>
#include <stdexcept>

namespace {

/// The bare loop: the statement in SQLite's own dialect, every row stepped to, each text copied
/// once.
size_t CopyTexts(sqlite3 *connection, const QString &sql)
{
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v2(connection, ToSqlite(sql).toUtf8(), -1, &statement, nullptr)
        != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(connection));
    std::vector<char> texts;
    const int columns = sqlite3_column_count(statement);
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (int column = 0; column < columns; ++column) {
            const auto *text
                = reinterpret_cast<const char *>(sqlite3_column_text(statement, column));
            texts.insert(texts.end(), text, text + sqlite3_column_bytes(statement, column));
        }
    }
    sqlite3_finalize(statement);
    return texts.size();
}

double LoadTime(bDAO &db, int lines)
{
    BenchWindow window;
    return MillisecondsOf([&] {
        window.grid.SetRedraw(false);
        const LoadedList loaded = LoadList(db, BenchDatabase::CustomerOf(lines), window.list);
        window.grid.SetRedraw(true);
        window.Paint();
        if (loaded.lineCount != lines)
            throw std::runtime_error("the list has another number of lines");
    });
}

void BenchListLoad(const Sizes &sizes, bDAO &db, Database &bareDatabase,
                   std::vector<Measurement> &results)
{
    const QString sql = BuildListSql(BenchDatabase::CustomerOf(sizes.list));
    results.push_back(
        CompareTimes(QString("list load, %L1 lines of %L2").arg(sizes.list).arg(sizes.database),
                     1.5, {.run = [&] { LoadTime(db, sizes.list); }},
                     {.run = [&] { CopyTexts(bareDatabase.Connection(), sql); }}));
}

void BenchLoadPerLine(const Sizes &sizes, bDAO &db, std::vector<Measurement> &results)
{
    // The standard size again before each other one, so that both meet the same machine.
    const int standard = sizes.lists[1];
    for (const int size : sizes.lists) {
        if (size == standard)
            continue;
        Measurement result = CompareTimes(
            QString("list load per line, %L1 against %L2 lines").arg(size).arg(standard), 1.2,
            {.run = [&] { LoadTime(db, size); }}, {.run = [&] { LoadTime(db, standard); }}, 3);
        result.unit = "us";
        result.ours *= 1000.0 / size;
        result.bare *= 1000.0 / standard;
        results.push_back(result);
    }
}

void BenchSearch(const Sizes &sizes, bDAO &db, std::vector<Measurement> &results)
{
    const BenchDatabase small(sizes.folder, sizes.smallDatabase, {sizes.search});
    ProgramState smallState;
    small.Open(smallState);
    results.push_back(CompareTimes(QString("search for %L1 lines in %L2 against in %L3")
                                       .arg(sizes.search)
                                       .arg(sizes.database)
                                       .arg(sizes.smallDatabase),
                                   1.5, {.run = [&] { LoadTime(db, sizes.search); }},
                                   {.run = [&] { LoadTime(smallState.db, sizes.search); }}));
}

void BenchPicker(const Sizes &sizes, std::vector<Measurement> &results)
{
    QTemporaryDir folder;
    auto database = Database::Create(folder.filePath("TLDB0010.MDB"), ConnectText);
    CreateTables(*database);
    database->ExecuteNative(
        QString("WITH RECURSIVE N(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM N"
                " WHERE i < %1) INSERT INTO TLMT0020 SELECT printf('HIN-%07d', i),"
                " '積層セラミックコンデンサ ' || i, 5, 0, 'TLDB', '20260101',"
                " '090000' FROM N")
            .arg(sizes.products));
    bDAO db;
    db.OpenDB(Files(), folder.filePath("TLDB0010.MDB"), false, ConnectText);
    results.push_back(
        CompareTimes(QString("picker with %L1 products").arg(sizes.products), 1.5,
                     {.run =
                          [&] {
                              SpreadGrid grid;
                              grid.SetColumnCount(2);
                              grid.SetRowMode();
                              grid.resize(640, 480);
                              grid.show();
                              SpreadX spread;
                              spread.Create(&grid);
                              grid.SetRedraw(false);
                              FillProducts(db, {}, spread);
                              grid.SetRedraw(true);
                              grid.viewport()->repaint();
                          }},
                     {.run = [&] { CopyTexts(database->Connection(), BuildProductSql({})); }}));
}

void BenchMemory(const Sizes &sizes, bDAO &db, std::vector<Measurement> &results)
{
    const double before = AllocatedBytes();
    BenchWindow window;
    window.grid.SetRedraw(false);
    LoadList(db, BenchDatabase::CustomerOf(sizes.list), window.list);
    window.grid.SetRedraw(true);
    window.Paint();
    const double taken = AllocatedBytes() - before;
    double texts = 0;
    for (int row = 1; row <= window.list.RowCount(); ++row)
        texts += double(window.grid.Model().RowText(row).toUtf8().size());
    results.push_back(
        {QString("memory per line against the bytes of its texts, %L1 lines").arg(sizes.list), "B",
         taken / sizes.list, texts / sizes.list, 3});
}

} // namespace

BenchDatabase LargeDatabase(const Sizes &sizes)
{
    std::vector<int> customers = sizes.lists;
    customers.push_back(sizes.search);
    if (std::find(customers.begin(), customers.end(), sizes.orders) == customers.end())
        customers.push_back(sizes.orders);
    return BenchDatabase(sizes.folder, sizes.database, customers);
}

void BenchLoading(const Sizes &sizes, std::vector<Measurement> &results)
{
    const BenchDatabase large = LargeDatabase(sizes);
    ProgramState state;
    large.Open(state);
    Database bareDatabase(large.Folder() + "/TLDB0010.MDB", false, ConnectText);
    BenchListLoad(sizes, state.db, bareDatabase, results);
    BenchLoadPerLine(sizes, state.db, results);
    BenchSearch(sizes, state.db, results);
    BenchPicker(sizes, results);
    BenchMemory(sizes, state.db, results);
}
