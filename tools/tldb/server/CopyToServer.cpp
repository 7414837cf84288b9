#include "tldb/server/CopyToServer.h"

#include "data/Tables.h"
#include "data/dao/DaoError.h"
#include "data/dao/postgres/ServerFile.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QStringDecoder>
#include <QtEndian>
#include <cmath>
#include <vector>

namespace {

constexpr QLatin1String PropertyTable("DBProperty");
constexpr qsizetype LongestName = 63; ///< bytes that a name has on a server

/// What a column holds on the server.
enum class Kind { Text, Whole, Real, Bytes };

struct Target
{
    StoredColumn column; ///< of the file
    Kind kind;
    QString type; ///< on the server
};

/// A column that the system does not know keeps the kind of values that it was made for.
Target TargetOf(const StoredColumn &column, const TableDefinition *table, Connection &server)
{
    const ColumnDefinition *known = table ? FindColumn(*table, column.name) : nullptr;
    if (known)
        return {column,
                known->IsText()                      ? Kind::Text
                : known->type == ColumnType::Integer ? Kind::Whole
                                                     : Kind::Real,
                server.Wanted(*known).type};
    if (column.type.contains("INT"))
        return {column, Kind::Whole, "bigint"};
    if (column.type.contains("REAL") || column.type.contains("FLOA")
        || column.type.contains("DOUB"))
        return {column, Kind::Real, "double precision"};
    if (column.type.contains("BLOB"))
        return {column, Kind::Bytes, "bytea"};
    return {column, Kind::Text, column.collation == "NOCASE" ? "citext" : "text"};
}

/// Sums of the values of a table's rows, the same in whatever order they come.
class RowSums
{
public:
    void Begin() { m_row.clear(); }
    void Null() { m_row += 'n'; }
    void Add(qint64 value) { AddBytes('w', {reinterpret_cast<const char *>(&value), 8}); }
    void Add(double value) { AddBytes('r', {reinterpret_cast<const char *>(&value), 8}); }
    void Add(char kind, QByteArrayView bytes)
    {
        m_row += QByteArray::number(bytes.size());
        AddBytes(kind, bytes);
    }
    void End()
    {
        ++m_count;
        m_sum += qFromBigEndian<quint64>(
            QCryptographicHash::hash(m_row, QCryptographicHash::Sha1).constData());
    }
    qint64 Count() const { return m_count; }
    bool operator==(const RowSums &other) const
    {
        return m_count == other.m_count && m_sum == other.m_sum;
    }

private:
    void AddBytes(char kind, QByteArrayView bytes)
    {
        m_row += kind;
        m_row += bytes;
    }

    QByteArray m_row;
    qint64 m_count = 0;
    quint64 m_sum = 0;
};

/// Takes a file's values to the server's columns.
class RowCopier
{
public:
    RowCopier(RowLoader &loader, const std::vector<Target> &targets, RowSums &sums)
        : m_loader(loader)
        , m_targets(targets)
        , m_sums(sums)
    {
    }

    /// Binds a value; returns why the server can't hold it, an empty text when it can.
    QString Bind(size_t column, const RowValue &value)
    {
        const int index = int(column);
        if (value.IsNull()) {
            m_loader.BindNull(index);
            m_sums.Null();
            return {};
        }
        switch (m_targets[column].kind) {
        case Kind::Text:
            return BindText(index, value);
        case Kind::Whole:
            if (!value.IsNumber() || double(value.Whole()) != value.Number())
                return "is not a whole number";
            m_loader.Bind(index, value.Whole());
            m_sums.Add(value.Whole());
            return {};
        case Kind::Real:
            if (!value.IsNumber())
                return "is not a number";
            if (value.type == ValueType::Whole && qint64(value.Number()) != value.Whole())
                return "has more digits than a double";
            m_loader.Bind(index, value.Number());
            m_sums.Add(value.Number());
            return {};
        default:
            if (value.type != ValueType::Bytes)
                return "is not bytes";
            m_loader.Bind(index, value.Bytes().toByteArray());
            m_sums.Add('b', value.Bytes());
            return {};
        }
    }

private:
    QString BindText(int index, const RowValue &value)
    {
        if (value.type == ValueType::Bytes)
            return "is not a text";
        QString text;
        if (value.type == ValueType::Text) {
            // A byte order mark at its beginning is a character like others.
            QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
            text = decoder.decode(value.Bytes());
            if (decoder.hasError())
                return "is not UTF-8";
        } else if (value.type == ValueType::Whole) {
            text = value.Text();
        } else {
            text = QString::number(value.Number(), 'g', QLocale::FloatingPointShortest);
        }
        if (text.contains(QChar(0)))
            return "has NUL characters";
        m_loader.Bind(index, text);
        m_sums.Add('t', value.type == ValueType::Text ? value.Bytes() : text.toUtf8());
        return {};
    }

    RowLoader &m_loader;
    const std::vector<Target> &m_targets;
    RowSums &m_sums;
};

QStringList NamesOf(const std::vector<Target> &targets)
{
    QStringList names;
    for (const Target &target : targets)
        names += target.column.name;
    return names;
}

/// A name as the server has it: those that are not quoted are small there.
QString ServerName(const QString &name)
{
    QString small;
    for (const QChar c : name)
        small += c >= 'A' && c <= 'Z' ? QChar(c.unicode() + 32) : c;
    if (small.toUtf8().size() > LongestName)
        throw DaoErrors::Make(DaoErrors::SyntaxError, "tldb",
                              "a name is too long for the server: " + name);
    return QuotedName(small);
}

void MakeTable(Database &server, const QString &table, const std::vector<Target> &targets)
{
    QStringList parts;
    for (const Target &target : targets)
        parts += ServerName(target.column.name) + ' ' + target.type
                 + (target.column.isNotNull ? " NOT NULL" : "");
    // Room for changed rows in their own page: it is cleared up without a vacuum.
    server.ExecuteNative("CREATE TABLE " + ServerName(table) + " (" + parts.join(", ")
                         + ") WITH (fillfactor = 80)");
}

/// Keys and indexes come last: a table fills faster without them.
void MakeIndexes(Database &file, Database &server, const QString &table,
                 const std::vector<Target> &targets)
{
    QStringList keys;
    for (const Target &target : targets)
        if (target.column.isKey)
            keys += ServerName(target.column.name);
    if (!keys.isEmpty())
        server.ExecuteNative("ALTER TABLE " + ServerName(table) + " ADD PRIMARY KEY ("
                             + keys.join(", ") + ')');
    QStringList columns = file.Engine().IndexedColumns(table);
    columns.removeDuplicates();
    for (const QString &column : columns)
        if (keys.value(0) != ServerName(column))
            server.ExecuteNative("CREATE INDEX ON " + ServerName(table) + " (" + ServerName(column)
                                 + ')');
    server.ExecuteNative("ANALYZE " + ServerName(table));
}

QString KeyText(const std::vector<Target> &targets, std::span<const RowValue> row, qint64 number)
{
    QStringList parts;
    for (size_t column = 0; column < targets.size(); ++column)
        if (targets[column].column.isKey)
            parts += targets[column].column.name + '=' + row[column].Text();
    return parts.isEmpty() ? QString("row=%1").arg(number) : parts.join(' ');
}

RowSums CopyRows(Database &file, Database &server, const QString &table,
                 const std::vector<Target> &targets, const FindingSink &found)
{
    RowSums sums;
    QStringList names;
    for (const QString &name : NamesOf(targets))
        names += QuotedName(name);
    const auto loader = server.Engine().LoadRows(table, NamesOf(targets));
    RowCopier copier(*loader, targets, sums);
    file.VisitRows("SELECT " + names.join(", ") + " FROM " + QuotedName(table),
                   [&](std::span<const RowValue> row) {
                       sums.Begin();
                       bool isWhole = true;
                       for (size_t column = 0; column < targets.size(); ++column) {
                           const QString fault = copier.Bind(column, row[column]);
                           isWhole &= fault.isEmpty();
                           if (!fault.isEmpty())
                               found({table, KeyText(targets, row, sums.Count() + 1),
                                      targets[column].column.name, fault});
                       }
                       sums.End();
                       if (isWhole)
                           loader->Insert();
                   });
    loader->Finish();
    return sums;
}

/// The sums of what is on the server.
RowSums ReadBack(Database &server, const QString &table, const std::vector<Target> &targets)
{
    RowSums sums;
    QStringList names;
    for (const QString &name : NamesOf(targets))
        names += ServerName(name);
    server.VisitRows("SELECT " + names.join(", ") + " FROM " + ServerName(table),
                     [&](std::span<const RowValue> row) {
                         sums.Begin();
                         for (const RowValue &value : row) {
                             if (value.IsNull())
                                 sums.Null();
                             else if (value.type == ValueType::Whole)
                                 sums.Add(value.Whole());
                             else if (value.type == ValueType::Real)
                                 sums.Add(value.Number());
                             else
                                 sums.Add(value.type == ValueType::Bytes ? 'b' : 't',
                                          value.Bytes());
                         }
                         sums.End();
                     });
    return sums;
}

} // namespace

CopyCount CopyToServer(Database &file, Database &server, const FindingSink &found, QTextStream &out)
{
    file.ExecuteNative("BEGIN"); // from its first reading on, nobody writes
    CopyCount count;
    const auto properties = file.OpenRecordset("SELECT Name, Value FROM DBProperty");
    for (; !properties->IsEof(); properties->MoveNext())
        server.SetProperty(properties->Text(0), properties->Text(1));
    for (const QString &table : file.Engine().TableNames()) {
        if (table.compare(PropertyTable, Qt::CaseInsensitive) == 0)
            continue;
        std::vector<Target> targets;
        for (const StoredColumn &column : file.Engine().Columns(table))
            targets.push_back(TargetOf(column, FindTable(table), server.Engine()));
        MakeTable(server, table, targets);
        const RowSums read = CopyRows(file, server, table, targets, found);
        MakeIndexes(file, server, table, targets);
        if (!(ReadBack(server, table, targets) == read))
            found({table, {}, {}, "the server does not hold what the file holds"});
        out << QString("%1: %2 rows\n").arg(table).arg(read.Count());
        ++count.tables;
        count.rows += read.Count();
    }
    file.ExecuteNative("COMMIT");
    return count;
}

QString ServerFilePath(const QString &folder)
{
    return QDir(folder).filePath("TLDB0010-SERVER.MDB");
}

void WriteServerFile(const QString &path, const QString &settings)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw DaoErrors::Make(file.exists() ? DaoErrors::FileExists : DaoErrors::CannotUpdate,
                              "tldb", path);
    const bool isWritten = file.write(ServerFile::TextFor(settings)) > 0 && file.flush();
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup
                        | QFile::WriteGroup);
    if (!isWritten) {
        file.remove();
        throw DaoErrors::Make(DaoErrors::DiskFull, "tldb", path);
    }
}
