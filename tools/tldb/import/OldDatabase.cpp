#include "tldb/import/OldDatabase.h"

#include "data/dao/Database.h"
#include "tldb/import/OldRow.h"

#include <QFile>
#include <QFileInfo>
#include <array>
#include <cstring>
#include <mdbtools.h>
#include <sys/resource.h>
#include <sys/wait.h>

namespace {

constexpr int PageSize = 4096;
constexpr int OffsetMask = 0x1fff; ///< the other bits of a row's offset are marks
constexpr qsizetype ReferenceSize = 12;

constexpr auto DamagedText = "the file is damaged";
constexpr auto CutText = "the file is damaged: its end is missing";

/// Takes the process's standard error away for a while: the library writes there as it likes, and
/// what matters of it shows in the tables as well.
class QuietErrors
{
public:
    QuietErrors()
    {
        const int nowhere = ::open("/dev/null", O_WRONLY);
        ::dup2(nowhere, STDERR_FILENO);
        ::close(nowhere);
    }
    ~QuietErrors()
    {
        ::dup2(m_errors, STDERR_FILENO);
        ::close(m_errors);
    }
    QuietErrors(const QuietErrors &) = delete;
    QuietErrors &operator=(const QuietErrors &) = delete;

private:
    int m_errors = ::dup(STDERR_FILENO);
};

/// Throws OldDatabaseError when the first bytes or the size tell that the file can't be read.
void CheckFile(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        throw OldDatabaseError{"the file does not exist"};
    if (!QFileInfo(path).isFile())
        throw OldDatabaseError{"is not a file"};
    if (!file.open(QIODevice::ReadOnly))
        throw OldDatabaseError{file.errorString()};
    const QByteArray head = file.read(OldEngineHeader.size() + 1);
    if (!head.startsWith(OldEngineHeader))
        throw OldDatabaseError{"the file is not in the original engine's format"};
    if (head.size() <= OldEngineHeader.size() || head.back() != MDB_VER_JET4)
        throw OldDatabaseError{"the file is not in format 4 of the original engine"};
    if (file.size() % PageSize != 0)
        throw OldDatabaseError{CutText};
}

quint32 ReadUint(QByteArrayView bytes)
{
    quint32 number;
    std::memcpy(&number, bytes.data(), sizeof number);
    return number;
}

/// A memo or long binary, whose row has but a reference: its length and marks, where the value is,
/// or the value itself. Nothing when the reference leads nowhere; `isSound` becomes false when it
/// leads to more than the value has.
std::optional<QByteArray> ReadLongValue(MdbHandle *file, QByteArrayView reference, bool &isSound)
{
    constexpr quint32 IsInRow = 0x80000000;
    constexpr quint32 IsInOnePiece = 0x40000000;
    if (reference.size() < ReferenceSize)
        return std::nullopt;
    const quint32 marks = ReadUint(reference);
    const qsizetype length = marks & ~(IsInRow | IsInOnePiece);
    QByteArray value;
    if (marks & IsInRow)
        value = reference.sliced(ReferenceSize).toByteArray();
    for (quint32 next = ReadUint(reference.sliced(4));
         !(marks & IsInRow) && value.size() < length && next != 0;) {
        void *page = nullptr;
        int start = 0;
        size_t size = 0;
        if (mdb_find_pg_row(file, int(next), &page, &start, &size) != 0)
            return std::nullopt;
        start &= OffsetMask;
        if (start + size > size_t(PageSize))
            return std::nullopt;
        QByteArrayView piece(static_cast<const char *>(page) + start, qsizetype(size));
        next = 0;
        if (!(marks & IsInOnePiece)) {
            if (piece.size() <= qsizetype(sizeof next))
                return std::nullopt;
            next = ReadUint(piece);
            piece = piece.sliced(sizeof next);
        }
        value += piece;
    }
    if (value.size() < length)
        return std::nullopt;
    isSound = isSound && value.size() == length;
    return value.first(length);
}

std::optional<OldType> TypeOf(int type)
{
    switch (type) {
    case MDB_BOOL:
        return OldType::Boolean;
    case MDB_BYTE:
        return OldType::Byte;
    case MDB_INT:
        return OldType::Short;
    case MDB_LONGINT:
        return OldType::Long;
    case MDB_MONEY:
        return OldType::Currency;
    case MDB_FLOAT:
        return OldType::Single;
    case MDB_DOUBLE:
        return OldType::Double;
    case MDB_DATETIME:
        return OldType::DateTime;
    case MDB_BINARY:
        return OldType::Binary;
    case MDB_TEXT:
        return OldType::Text;
    case MDB_OLE:
        return OldType::LongBinary;
    case MDB_MEMO:
        return OldType::Memo;
    case MDB_REPID:
        return OldType::Guid;
    case MDB_NUMERIC:
        return OldType::Decimal;
    default:
        return std::nullopt;
    }
}

/// The value of a field. `isSound` becomes false when it can't be what was written.
OldValue ReadValue(MdbHandle *file, const MdbField &field, OldType type, const MdbColumn &column,
                   bool &isSound)
{
    // The format keeps a boolean as the mark that other columns have for null.
    if (type == OldType::Boolean)
        return qint64(field.is_null ? 0 : 1);
    if (field.is_null)
        return {};
    if (field.siz < 0 || field.start < 0 || field.start + field.siz > PageSize)
        return Unreadable();
    const QByteArrayView bytes(reinterpret_cast<const char *>(file->pg_buf) + field.start,
                               field.siz);
    if (type == OldType::Memo || type == OldType::LongBinary) {
        const auto value = ReadLongValue(file, bytes, isSound);
        return value ? ToValue(type, *value, column.col_scale) : Unreadable();
    }
    const OldValue value = ToValue(type, bytes, column.col_scale);
    const auto *text = std::get_if<QString>(&value);
    if (type == OldType::Text && text->size() * qsizetype(sizeof(QChar)) > column.col_size)
        isSound = false;
    return value;
}

struct FreeTable
{
    void operator()(MdbTableDef *table) const { mdb_free_tabledef(table); }
};
using TablePointer = std::unique_ptr<MdbTableDef, FreeTable>;

/// Whether the file goes on to the last page of the table.
bool IsWithin(MdbCatalogEntry *entry, quint32 pageCount)
{
    if (entry->table_pg >= pageCount)
        return false;
    const TablePointer table(mdb_read_table(entry));
    qint64 page = 0;
    do {
        page = table ? mdb_map_find_next(entry->mdb, table->usage_map, uint(table->map_sz),
                                         quint32(page))
                     : 0;
    } while (page > 0 && page < pageCount);
    return page <= 0;
}

} // namespace

struct OldTable::Handle
{
    const MdbColumn &Column(size_t index) const
    {
        return *static_cast<MdbColumn *>(g_ptr_array_index(table->columns, index));
    }

    MdbHandle *file;
    TablePointer table;
};

struct OldDatabase::Handle
{
    explicit Handle(const QString &path)
    {
        // The library takes the code of names, and whether to read memos, from these.
        qunsetenv("MDBICONV");
        qunsetenv("MDBOPTS");
        file.reset(mdb_open(QFile::encodeName(path), MDB_NOFLAGS));
        if (!file || !mdb_read_catalog(file.get(), MDB_ANY))
            throw OldDatabaseError{DamagedText};
        const quint32 pageCount = quint32(QFileInfo(path).size() / PageSize);
        bool hasTables = false;
        ForEachEntry([&](MdbCatalogEntry *entry) {
            if (entry->object_type == MDB_TABLE && !IsWithin(entry, pageCount))
                throw OldDatabaseError{CutText};
            hasTables |= mdb_is_user_table(entry) != 0;
        });
        if (!hasTables)
            throw OldDatabaseError{"no table can be read"};
    }

    template <typename Visit>
    void ForEachEntry(Visit &&visit) const
    {
        for (unsigned int index = 0; index < file->num_catalog; ++index)
            visit(static_cast<MdbCatalogEntry *>(g_ptr_array_index(file->catalog, index)));
    }

    struct Close
    {
        void operator()(MdbHandle *handle) const { mdb_close(handle); }
    };
    QuietErrors quiet;
    std::unique_ptr<MdbHandle, Close> file;
};

OldTable::OldTable(std::unique_ptr<Handle> handle)
    : m_handle(std::move(handle))
{
    for (unsigned int index = 0; index < m_handle->table->num_cols; ++index) {
        const MdbColumn &column = m_handle->Column(index);
        const auto type = TypeOf(column.col_type);
        if (!type)
            throw OldDatabaseError{QString("column %1 is of an unknown type: %2")
                                       .arg(QString::fromUtf8(column.name))
                                       .arg(column.col_type)};
        m_columns.push_back({QString::fromUtf8(column.name), *type});
    }
}

OldTable::~OldTable() = default;

qint64 OldTable::RowCount() const
{
    return m_handle->table->num_rows;
}

bool OldTable::Next(std::vector<OldValue> &row, bool &isSound)
{
    MdbHandle *file = m_handle->file;
    MdbTableDef *table = m_handle->table.get();
    if (!mdb_fetch_row(table))
        return false;
    // The library's own values are texts of a fixed size: take the bytes of the row it stands on.
    int start = 0;
    size_t size = 0;
    std::array<MdbField, MDB_MAX_COLS> fields = {};
    int count = 0;
    if (mdb_find_row(file, int(table->cur_row) - 1, &start, &size) == 0)
        count = mdb_crack_row(table, start & OffsetMask, size, fields.data());
    isSound = count > 0
              && IsSoundRow(*table,
                            {reinterpret_cast<const char *>(file->pg_buf) + (start & OffsetMask),
                             qsizetype(size)});
    row.assign(m_columns.size(), Unreadable());
    for (size_t index = 0; index < m_columns.size() && int(index) < count; ++index)
        row[index] = ReadValue(file, fields[index], m_columns[index].type, m_handle->Column(index),
                               isSound);
    return true;
}

OldDatabase::OldDatabase(const QString &path)
{
    CheckFile(path);
    TryReading(path);
    m_handle = std::make_unique<Handle>(path);
}

OldDatabase::OldDatabase(std::unique_ptr<Handle> handle)
    : m_handle(std::move(handle))
{
}

OldDatabase::~OldDatabase() = default;

void OldDatabase::TryReading(const QString &path)
{
    constexpr rlim_t MegabytesPerSecond = 1; // a sound file takes far less
    const pid_t child = ::fork();
    if (child < 0)
        throw OldDatabaseError{qt_error_string(errno)};
    if (child == 0) {
        const rlim_t seconds = 10 + rlim_t(QFileInfo(path).size() >> 20) / MegabytesPerSecond;
        const rlimit time = {seconds, seconds};
        const rlimit noDump = {0, 0};
        ::setrlimit(RLIMIT_CPU, &time);
        ::setrlimit(RLIMIT_CORE, &noDump);
        try {
            OldDatabase(std::make_unique<Handle>(path)).ReadThrough();
        } catch (const OldDatabaseError &) {
            // The parent meets it, too.
        }
        ::_exit(0);
    }
    int state = 0;
    while (::waitpid(child, &state, 0) < 0 && errno == EINTR) {
    }
    if (state != 0)
        throw OldDatabaseError{QString(DamagedText) + ": reading it through fails"};
}

void OldDatabase::ReadThrough()
{
    AccessVersion();
    std::vector<OldValue> row;
    bool isSound = true;
    for (const QString &name : TableNames()) {
        try {
            const auto table = OpenTable(name);
            while (table->Next(row, isSound)) {
            }
        } catch (const OldDatabaseError &) {
            // One table that is refused leaves the others to be read.
        }
    }
}

QStringList OldDatabase::TableNames() const
{
    QStringList names;
    m_handle->ForEachEntry([&](MdbCatalogEntry *entry) {
        if (mdb_is_user_table(entry))
            names += QString::fromUtf8(entry->object_name);
    });
    return names;
}

std::optional<QString> OldDatabase::AccessVersion() const
{
    std::optional<QString> version;
    m_handle->ForEachEntry([&](MdbCatalogEntry *entry) {
        if (strcmp(entry->object_name, "MSysDb") != 0 || !entry->props)
            return;
        for (unsigned int index = 0; index < entry->props->len; ++index) {
            const auto *properties
                = static_cast<MdbProperties *>(g_ptr_array_index(entry->props, index));
            const void *value = g_hash_table_lookup(properties->hash, "AccessVersion");
            if (value)
                version = QString::fromUtf8(static_cast<const char *>(value));
        }
    });
    return version;
}

std::unique_ptr<OldTable> OldDatabase::OpenTable(const QString &name)
{
    MdbTableDef *table = nullptr;
    m_handle->ForEachEntry([&](MdbCatalogEntry *entry) {
        if (!table && mdb_is_user_table(entry) && name == QString::fromUtf8(entry->object_name))
            table = mdb_read_table(entry);
    });
    if (!table)
        throw OldDatabaseError{"its definition can't be read"};
    auto handle = std::make_unique<OldTable::Handle>();
    handle->file = m_handle->file.get();
    handle->table.reset(table);
    if (table->num_cols > MDB_MAX_COLS || !mdb_read_columns(table)
        || table->columns->len != table->num_cols)
        throw OldDatabaseError{"its columns can't be read"};
    mdb_rewind_table(table);
    return std::unique_ptr<OldTable>(new OldTable(std::move(handle)));
}
