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
    {
        Set(value.toUtf8());
    }
    ~Variable() { Set(m_old); }
    Q_DISABLE_COPY(Variable)

private:
    void Set(const QByteArray &value) const
    {
        if (value.isNull())
            qunsetenv(m_name);
        else
            qputenv(m_name, value);
    }

    const char *m_name;
    QByteArray m_old;
};
