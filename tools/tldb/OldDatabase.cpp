#include "tldb/OldDatabase.h"

#include "data/dao/DaoError.h"

#include <QDateTime>
#include <QFile>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <mdbtools.h>

namespace {

constexpr auto Source = "tldb";
constexpr int PageSize = 4096;
constexpr quint8 Format4 = 1;
constexpr int FormatAt = 20; ///< of the byte that tells the format
constexpr int RowStartMask = 0x1fff;
constexpr quint32 MemoLengthMask = 0x3fffffff;

const char *SqlTypeOf(int type)
{
    switch (type) {
    case MDB_BOOL:
    case MDB_BYTE:
    case MDB_INT:
    case MDB_LONGINT:
        return "INTEGER";
    case MDB_FLOAT:
    case MDB_DOUBLE:
        return "REAL";
    case MDB_MONEY:
    case MDB_NUMERIC:
        return "NUMERIC";
    case MDB_OLE:
    case MDB_BINARY:
        return "BLOB";
    default:
        return "TEXT COLLATE NOCASE";
    }
}

template <typename T>
T Read(const unsigned char *data)
{
    T value;
    std::memcpy(&value, data, sizeof value);
    return value;
}

/// Currency: ten thousandths.
QString MoneyText(qint64 tenThousandths)
{
    QString digits = QString::number(std::abs(tenThousandths)).rightJustified(5, '0');
    digits.insert(digits.size() - 4, '.');
    return (tenThousandths < 0 ? "-" : "") + digits;
}

/// Days since the end of 1899; the time of day counts forward also before that.
QString DateText(double days)
{
    const double day = std::trunc(days);
    const QDateTime start(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC);
    return start.addDays(qint64(day))
        .addSecs(std::llround(std::abs(days - day) * 24 * 60 * 60))
        .toString("yyyy-MM-dd HH:mm:ss");
}

/// A file that is no whole database makes the library read where nothing is.
void CheckFile(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        throw DaoErrors::Make(DaoErrors::FileNotFound, Source, path);
    if (!file.open(QIODevice::ReadOnly))
        throw DaoErrors::Make(DaoErrors::UnrecognizedFormat, Source, file.errorString());
    const QByteArray start = file.read(FormatAt + 1);
    const bool isOfEngine = start.startsWith(QByteArray("\0\1\0\0Standard Jet DB\0", FormatAt));
    if (!isOfEngine || start.size() <= FormatAt || quint8(start[FormatAt]) != Format4
        || file.size() % PageSize != 0)
        throw DaoErrors::Make(DaoErrors::UnrecognizedFormat, Source, path);
}

} // namespace

struct OldDatabase::Handles
{
    MdbHandle *file = nullptr;
    ~Handles() { mdb_close(file); }

    MdbCatalogEntry *Entry(int at) const
    {
        return static_cast<MdbCatalogEntry *>(g_ptr_array_index(file->catalog, at));
    }

    template <typename Wanted>
    MdbCatalogEntry *Find(Wanted &&isWanted) const
    {
        for (int at = 0; at < int(file->num_catalog); ++at)
            if (isWanted(Entry(at)))
                return Entry(at);
        return nullptr;
    }
};

OldDatabase::OldDatabase(const QString &path)
{
    CheckFile(path);
    MdbHandle *file = mdb_open(QFile::encodeName(path), MDB_NOFLAGS);
    if (!file)
        throw DaoErrors::Make(DaoErrors::UnrecognizedFormat, Source, path);
    m_handles = std::make_unique<Handles>();
    m_handles->file = file;
    if (!mdb_read_catalog(file, MDB_ANY))
        throw DaoErrors::Make(DaoErrors::UnrecognizedFormat, Source, path);
}

OldDatabase::~OldDatabase() = default;

QStringList OldDatabase::TableNames() const
{
    QStringList names;
    m_handles->Find([&](MdbCatalogEntry *entry) {
        if (mdb_is_user_table(entry))
            names += QString::fromUtf8(entry->object_name);
        return false;
    });
    return names;
}

QString OldDatabase::AccessVersion() const
{
    const MdbCatalogEntry *entry = m_handles->Find([](MdbCatalogEntry *candidate) {
        return std::strcmp(candidate->object_name, "MSysDb") == 0;
    });
    for (guint at = 0; entry && entry->props && at < entry->props->len; ++at) {
        const auto *properties = static_cast<MdbProperties *>(g_ptr_array_index(entry->props, at));
        const auto *version = properties->hash ? static_cast<const char *>(
                                  g_hash_table_lookup(properties->hash, "AccessVersion"))
                                               : nullptr;
        if (version)
            return QString::fromUtf8(version);
    }
    return {};
}

struct OldTable::State
{
    MdbHandle *file = nullptr;
    MdbTableDef *table = nullptr;
    MdbField fields[MDB_MAX_COLS];
    std::vector<QByteArray> objects; ///< where the library puts long binary values; by column
    std::vector<int> lengths;
    ~State()
    {
        if (table)
            mdb_free_tabledef(table);
    }

    MdbColumn *Column(int at) const
    {
        return static_cast<MdbColumn *>(g_ptr_array_index(table->columns, at));
    }

    QString Text(const MdbField &field, int type)
    {
        if (type == MDB_MEMO && field.siz >= int(sizeof(quint32))) {
            // The library cuts what does not fit: at most three bytes stand for one of the file's.
            const auto *data = static_cast<const unsigned char *>(field.value);
            const size_t length = Read<quint32>(data) & MemoLengthMask;
            mdb_set_bind_size(file, std::max<size_t>(MDB_BIND_SIZE, 3 * length + 1));
        }
        char *text = mdb_col_to_string(file, file->pg_buf, field.start, type, field.siz);
        const QString result = QString::fromUtf8(text);
        g_free(text);
        return result;
    }
};

OldTable::OldTable(OldDatabase &database, const QString &name)
    : m_state(std::make_unique<State>())
{
    const QByteArray utf8 = name.toUtf8();
    MdbCatalogEntry *entry = database.m_handles->Find([&](MdbCatalogEntry *candidate) {
        return mdb_is_user_table(candidate) && utf8 == candidate->object_name;
    });
    m_state->file = database.m_handles->file;
    m_state->table = entry ? mdb_read_table(entry) : nullptr;
    if (!m_state->table || !mdb_read_columns(m_state->table)
        || m_state->table->num_cols > MDB_MAX_COLS)
        throw DaoErrors::Make(DaoErrors::ItemNotFound, Source, name);
    m_state->objects.resize(m_state->table->num_cols);
    m_state->lengths.resize(m_state->table->num_cols);
    for (int at = 0; at < int(m_state->table->num_cols); ++at) {
        const MdbColumn *column = m_state->Column(at);
        m_columns.push_back({QString::fromUtf8(column->name), SqlTypeOf(column->col_type)});
        if (column->col_type != MDB_OLE)
            continue;
        m_state->objects[size_t(at)].resize(MDB_BIND_SIZE);
        mdb_bind_column(m_state->table, at + 1, m_state->objects[size_t(at)].data(),
                        &m_state->lengths[size_t(at)]);
    }
    mdb_rewind_table(m_state->table);
}

OldTable::~OldTable() = default;

qint64 OldTable::DeclaredRows() const
{
    return m_state->table->num_rows;
}

bool OldTable::Next()
{
    MdbTableDef *table = m_state->table;
    if (!mdb_fetch_row(table))
        return false;
    int start = 0;
    size_t size = 0;
    if (mdb_find_row(m_state->file, int(table->cur_row) - 1, &start, &size) != 0)
        return false;
    return mdb_crack_row(table, start & RowStartMask, size, m_state->fields) >= 0;
}

OldValue OldTable::Value(int column)
{
    const MdbField &field = m_state->fields[column];
    MdbColumn *definition = m_state->Column(column);
    const int type = definition->col_type;
    if (type == MDB_BOOL)
        return qint64(field.is_null ? 0 : 1);
    if (field.is_null)
        return std::monostate();
    const auto *data = static_cast<const unsigned char *>(field.value);
    const auto has = [&](size_t size) { return size_t(field.siz) >= size; };
    if (type == MDB_BYTE && has(1))
        return qint64(*data);
    if (type == MDB_INT && has(2))
        return qint64(Read<qint16>(data));
    if (type == MDB_LONGINT && has(4))
        return qint64(Read<qint32>(data));
    if (type == MDB_FLOAT && has(4))
        return double(Read<float>(data));
    if (type == MDB_DOUBLE && has(8))
        return Read<double>(data);
    if (type == MDB_MONEY && has(8))
        return MoneyText(Read<qint64>(data));
    if (type == MDB_DATETIME && has(8))
        return DateText(Read<double>(data));
    if (type == MDB_BINARY)
        return QByteArray(reinterpret_cast<const char *>(data), field.siz);
    if (type == MDB_OLE) {
        size_t size = 0;
        void *bytes = mdb_ole_read_full(m_state->file, definition, &size);
        const QByteArray value(static_cast<const char *>(bytes), qsizetype(size));
        std::free(bytes);
        return value;
    }
    return field.siz == 0 ? QString("") : m_state->Text(field, type);
}
