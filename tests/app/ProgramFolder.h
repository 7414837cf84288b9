#pragma once

#include "support/TestDatabase.h"

#include <QFile>
#include <gtest/gtest.h>
#include <sys/stat.h>

/// An environment variable's value while this object lives.
class Variable
{
public:
    Variable(const char *name, const QString &value)
        : m_name(name)
        , m_old(qgetenv(name))
        , m_wasSet(qEnvironmentVariableIsSet(name))
    {
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

/// A machine of its own: a Windows directory and a run-time folder that nobody else uses, and a
/// folder for the program.
class Machine
{
public:
    Machine()
    {
        // The run-time folder counts only when nobody else may enter it.
        EXPECT_EQ(::chmod(runtimeFolder.Path().toUtf8(), 0700), 0);
    }

    const TestFolder program;
    const TestFolder windows;
    const TestFolder runtimeFolder;

private:
    const Variable m_windir{"WINDIR", windows.Path()};
    const Variable m_runtime{"XDG_RUNTIME_DIR", runtimeFolder.Path()};
};
