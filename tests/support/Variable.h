#pragma once

#include <QByteArray>
#include <QString>

/// An environment variable's value while this object lives; a null text: the variable is not set.
class Variable
{
public:
    Variable(const char *name, const QString &value)
        : m_name(name)
        , m_old(qgetenv(name))
        , m_wasSet(qEnvironmentVariableIsSet(name))
    {
        if (value.isNull())
            qunsetenv(name);
        else
            qputenv(name, value.toUtf8());
    }
    ~Variable()
    {
        if (m_wasSet)
            qputenv(m_name, m_old);
        else
            qunsetenv(m_name);
    }
    Variable(const Variable &) = delete;
    Variable &operator=(const Variable &) = delete;

private:
    const char *m_name;
    QByteArray m_old;
    bool m_wasSet;
};
