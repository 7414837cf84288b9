#include "data/dao/postgres/PostgresCancel.h"

#include <QThread>
#include <libpq-fe.h>
#include <thread>

void PostgresCancel::Ask(pg_conn *connection)
{
    if (IsAsked())
        return;
    m_isTaken = std::make_shared<std::atomic<bool>>(false);
    m_deadline.setRemainingTime(MostWaitMs);
    std::thread([cancel = PQgetCancel(connection), isTaken = m_isTaken] {
        char message[256];
        *isTaken = PQcancel(cancel, message, sizeof message) != 0;
        PQfreeCancel(cancel);
    }).detach();
}

bool PostgresCancel::WaitUntilTaken() const
{
    constexpr int PauseMs = 1;
    while (!*m_isTaken && !m_deadline.hasExpired())
        QThread::msleep(PauseMs);
    return *m_isTaken;
}
