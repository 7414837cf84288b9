#include "BenchWindow.h"
#include "Benches.h"

#include "data/Tables.h"
#include "data/dao/Database.h"
#include "data/dao/Dialect.h"
#include "data/dao/sqlite/SqliteConnection.h"
#include "grid/SpreadGrid.h"
#include "grid/SpreadX.h"
#include "lines/ListLoading.h"
#include "search/PickerLists.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <QTemporaryDir>
#include <algorithm>
#include <functional>
#include <memory>
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

void Load(bDAO &db, int lines, LineList &list)
{
    if (LoadList(db, BenchDatabase::CustomerOf(lines), list).lineCount != lines)
        throw std::runtime_error("the list has another number of lines");
}

/// Loading one customer's list, in place of one that goes away untimed.
TimedWork LoadWork(bDAO &db, int lines)
{
    const auto list = std::make_shared<LineList>();
    return {.prepare = [=] { list->Clear(); },
            .run = [=, &db] { Load(db, lines, *list); },
            .clean = [=] { list->Clear(); }};
}

void BenchListLoad(const Sizes &sizes, bDAO &db, Database &bareDatabase,
                   std::vector<Measurement> &results)
{
    const QString sql = BuildListSql(BenchDatabase::CustomerOf(sizes.list));
    results.push_back(CompareTimes(
        QString("list load, %L1 lines of %L2").arg(sizes.list).arg(sizes.database), 1.0,
        LoadWork(db, sizes.list), {.run = [&] {
            CopyTexts(static_cast<SqliteConnection &>(bareDatabase.Engine()).Handle(), sql);
        }}));
}

void BenchLoadPerLine(const Sizes &sizes, bDAO &db, std::vector<Measurement> &results)
{
    // The standard size again before each other one, so that both meet the same machine.
    const int standard = sizes.lists[1];
    for (const int size : sizes.lists) {
        if (size == standard)
            continue;
        // The less a round takes, the more of them a steady median needs.
        const int rounds = std::max(9, 100'000 / size);
        results.push_back(PerLine(
            CompareTimes(
                QString("list load per line, %L1 against %L2 lines").arg(size).arg(standard), 1.2,
                LoadWork(db, size), LoadWork(db, standard), rounds),
            size, standard));
    }
}

constexpr double FrameMs = 16; ///< the time that a screen has for a picture

/// The worst of some turns against the time for a picture.
template <typename Turn>
Measurement WorstTurn(const QString &what, Turn &&turn)
{
    constexpr int Turns = 100;
    double worst = 0;
    for (int at = 0; at < Turns; ++at)
        worst = std::max(worst, MillisecondsOf([&] { turn(at * 1.0 / Turns); }));
    return {what, "ms", worst, FrameMs, 1};
}

/// A picture that comes once only, as the median of some windows.
Measurement FirstPicture(const QString &what, const std::function<double()> &paint)
{
    constexpr size_t Windows = 9;
    std::vector<double> times;
    while (times.size() < Windows)
        times.push_back(paint());
    std::ranges::nth_element(times, times.begin() + Windows / 2);
    return {what, "ms", times[Windows / 2], FrameMs, 1};
}

/// The longest list: its load per line, then how it answers scrolling and keys.
void BenchLongestList(const Sizes &sizes, bDAO &standardDb, std::vector<Measurement> &results)
{
    ProgramState state;
    LongestDatabase(sizes).Open(state);
    const int standard = sizes.lists[1];
    results.push_back(PerLine(
        CompareTimes(
            QString("list load per line, %L1 against %L2 lines").arg(sizes.longest).arg(standard),
            1.2, LoadWork(state.db, sizes.longest), LoadWork(standardDb, standard), 3),
        sizes.longest, standard));

    LineList longest;
    Load(state.db, sizes.longest, longest);
    results.push_back(
        FirstPicture(QString("first picture of a list of %L1 lines").arg(sizes.longest), [&] {
            BenchWindow window;
            window.list = std::move(longest);
            const double time = MillisecondsOf([&] {
                window.model.Filled();
                window.Paint();
            });
            longest = std::move(window.list);
            return time;
        }));

    BenchWindow window;
    window.list = std::move(longest);
    window.model.Filled();
    window.Paint();
    QScrollBar *bar = window.grid.verticalScrollBar();
    results.push_back(
        WorstTurn(QString("slowest of 100 pictures while scrolling %L1 lines").arg(sizes.longest),
                  [&](double part) {
                      bar->setValue(int(bar->maximum() * part));
                      window.Paint();
                  }));
    window.grid.Activate(1, sizes.longest / 2);
    window.Paint();
    results.push_back(
        WorstTurn(QString("slowest of 100 keys in %L1 lines").arg(sizes.longest), [&](double) {
            for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
                QKeyEvent key(type, Qt::Key_Down, Qt::NoModifier);
                QCoreApplication::sendEvent(&window.grid, &key);
            }
            window.Paint();
        }));
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
                                   1.3, LoadWork(db, sizes.search),
                                   LoadWork(smallState.db, sizes.search)));
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
    results.push_back(FirstPicture(
        QString("first picture of the picker with %L1 products").arg(sizes.products), [&] {
            SpreadGrid grid;
            SpreadX spread;
            grid.SetColumnCount(2);
            grid.SetRowMode();
            grid.resize(640, 480);
            ShowAndWait(grid);
            spread.Create(&grid);
            grid.SetRedraw(false);
            FillProducts(db, {}, spread);
            return MillisecondsOf([&] {
                grid.SetRedraw(true);
                QCoreApplication::processEvents();
            });
        }));
}

void BenchMemory(const Sizes &sizes, bDAO &db, std::vector<Measurement> &results)
{
    BenchWindow window;
    const double before = AllocatedBytes();
    Load(db, sizes.list, window.list);
    window.model.Filled();
    window.Paint();
    const double taken = AllocatedBytes() - before;
    double texts = 0;
    for (int row = 1; row <= window.list.Count(); ++row)
        for (const ListColumn &column : ListColumns())
            texts += double(column.text(window.list.At(row)).toUtf8().size());
    results.push_back(
        {QString("memory per line against the bytes of its texts, %L1 lines").arg(sizes.list), "B",
         taken / sizes.list, texts / sizes.list, 2.2});
}

} // namespace

BenchDatabase LargeDatabase(const Sizes &sizes)
{
    std::vector<int> customers = sizes.lists;
    for (const int size : {sizes.search, sizes.orders, sizes.list / 2})
        if (std::find(customers.begin(), customers.end(), size) == customers.end())
            customers.push_back(size);
    return BenchDatabase(sizes.folder, sizes.database, customers);
}

BenchDatabase LongestDatabase(const Sizes &sizes)
{
    // Every line has an order of its own, so many lines of the demo data fall away.
    return BenchDatabase(sizes.folder, 2 * sizes.longest, {sizes.longest});
}

void BenchLoading(const Sizes &sizes, std::vector<Measurement> &results)
{
    const BenchDatabase large = LargeDatabase(sizes);
    ProgramState state;
    large.Open(state);
    Database bareDatabase(large.Folder() + "/TLDB0010.MDB", false, ConnectText);
    BenchListLoad(sizes, state.db, bareDatabase, results);
    BenchLoadPerLine(sizes, state.db, results);
    BenchLongestList(sizes, state.db, results);
    BenchSearch(sizes, state.db, results);
    BenchPicker(sizes, results);
    BenchMemory(sizes, state.db, results);
}
