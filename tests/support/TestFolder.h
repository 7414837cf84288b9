#pragma once

#include "platform/Files.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

/// A temporary folder of the machine, removed with all it holds; drive C of its Files.
class TestFolder
{
public:
    TestFolder();

    /// The machine's path of a name in the folder ("A/B.TXT"); the folder itself without one.
    QString Path(const QString &name = QString()) const;

    void Write(const QString &name, const QByteArray &bytes) const;
    QByteArray Read(const QString &name) const;
    void MakeFolder(const QString &name) const;

    /// Files in which "C:\" is this folder, and which wait for no lock.
    Files OnDriveC() const;

private:
    QTemporaryDir m_dir;
};

/// The drive mappings that a TALVEN.INI with these lines in section DRIVES gives.
DrivePaths DrivesOf(const QByteArray &lines);
