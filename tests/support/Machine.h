#pragma once

#include "support/TestFolder.h"
#include "support/Variable.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

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
