#include "data/dao/postgres/PostgresErrors.h"

#include <QByteArrayView>
#include <libpq-fe.h>

namespace {

int NumberOf(QByteArrayView state)
{
    // What begins the server's five characters, the longer ones first.
    static constexpr struct
    {
        const char *state;
        int number;
    } numbers[] = {
        {"23502", DaoErrors::NullNotAllowed}, {"23505", DaoErrors::DuplicateKey},
        {"25006", DaoErrors::CannotUpdate}, // read only
        {"40001", DaoErrors::Locked},       // another's write came between
        {"40P01", DaoErrors::Locked},       // a deadlock
        {"42501", DaoErrors::CannotOpen},   // no right to it
        {"53100", DaoErrors::DiskFull},       {"55P03", DaoErrors::Locked},
        {"58030", DaoErrors::DiskError},      {"08", DaoErrors::DiskError},
        {"22", DaoErrors::TypeMismatch},      {"23", DaoErrors::RuleBroken},
        {"28", DaoErrors::CannotOpen},        {"42", DaoErrors::SyntaxError},
        {"53", DaoErrors::CannotOpen},        {"P0", DaoErrors::RuleBroken}, // of a trigger
        {"XX001", DaoErrors::CorruptFile},    {"XX002", DaoErrors::CorruptFile},
    };
    for (const auto &entry : numbers)
        if (state.startsWith(entry.state))
            return entry.number;
    return DaoErrors::InternalError;
}

QString Field(const PGresult *result, int code)
{
    return QString::fromUtf8(PQresultErrorField(result, code));
}

} // namespace

DaoError PostgresErrors::Of(const PGresult *result)
{
    const ExecStatusType status = PQresultStatus(result);
    if (status != PGRES_FATAL_ERROR && status != PGRES_BAD_RESPONSE)
        return {};
    QString text = Field(result, PG_DIAG_MESSAGE_PRIMARY);
    if (text.isEmpty()) // the library's own
        text = QString::fromUtf8(PQresultErrorMessage(result)).simplified();
    if (const QString detail = Field(result, PG_DIAG_MESSAGE_DETAIL); !detail.isEmpty())
        text += ": " + detail;
    return DaoErrors::Make(NumberOf(PQresultErrorField(result, PG_DIAG_SQLSTATE)),
                           DaoErrors::DatabaseSource, text);
}

DaoError PostgresErrors::OfNetwork(const QString &what, const char *message)
{
    // What follows the first line is guesses.
    const QString own = QString::fromUtf8(message).section('\n', 0, 0).simplified();
    return DaoErrors::Make(DaoErrors::DiskError, DaoErrors::DatabaseSource,
                           own.isEmpty() ? what : what + ": " + own);
}
