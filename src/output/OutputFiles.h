#pragma once

#include "platform/Files.h"

#include <QString>
#include <map>
#include <memory>

/// Files by number, as the writers of answer files use them.
class OutputFiles
{
public:
    enum Mode { Append = 0, Binary = 1, Input = 2, Output = 3, Random = 4 };
    enum Access { Read = 0, Write = 1, ReadWrite = 2 };

    explicit OutputFiles(const Files &files)
        : m_files(files)
    {
    }

    /// Opens a file and returns its number; 0 after an error, which the file error box has shown.
    /// `access` counts for binary and random mode only, `recordLength` for random mode when 1 or
    /// more. The lock, when asked for, denies others what this open does itself. Another access in
    /// these modes opens nothing and gives 0; another mode opens nothing and gives the next free
    /// number.
    int OpenFileNo(const QString &path, int mode, int access, bool isLocked, int recordLength = 0);

    /// Closes the file; an unknown number is ignored. True always.
    bool CloseFileNo(int fileNo);

    /// The open file; null for an unknown number.
    OpenFile *File(int fileNo);

private:
    const Files &m_files;
    std::map<int, std::unique_ptr<OpenFile>> m_open;
};

/// The box that tells of a file that can't be opened or written.
void ShowFileError(int error, const QString &path);
