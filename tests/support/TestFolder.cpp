#include "support/TestFolder.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

TestFolder::TestFolder()
{
    EXPECT_TRUE(m_dir.isValid());
}

QString TestFolder::Path(const QString &name) const
{
    return name.isEmpty() ? m_dir.path() : m_dir.filePath(name);
}

void TestFolder::Write(const QString &name, const QByteArray &bytes) const
{
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(bytes), bytes.size());
}

QByteArray TestFolder::Read(const QString &name) const
{
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

void TestFolder::MakeFolder(const QString &name) const
{
    EXPECT_TRUE(QDir().mkpath(Path(name)));
}

Files TestFolder::OnDriveC() const
{
    Files files(DrivesOf("C=" + Path().toUtf8()));
    files.SetLockWait(0);
    return files;
}

DrivePaths DrivesOf(const QByteArray &lines)
{
    const TestFolder folder;
    folder.Write("TALVEN.INI", "[DRIVES]\r\n" + lines + "\r\n");
    return DrivePaths(IniFile::Read(folder.Path("TALVEN.INI")));
}
