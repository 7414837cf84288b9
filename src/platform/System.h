#pragma once

#include <QRect>
#include <QStringList>
#include <memory>

class OpenFile;
class QWidget;

/// The Windows directory: $WINDIR, else /etc/talven. No trailing separator.
QString GetWindowsDir();

/// Keeps this user's one running copy of the program on this machine.
class PreviousInstance
{
public:
    explicit PreviousInstance(const QString &programName);
    ~PreviousInstance();

    enum State {
        First,
        Second, ///< another copy runs
        Unknown ///< there is no folder in which a lock is safe from other users
    };
    State Is() const { return m_state; }

    /// Where a lock is kept, the best place first. Only a folder that is the user's own and that
    /// nobody else may enter is taken.
    static QStringList Folders();

private:
    std::unique_ptr<OpenFile> m_lock;
    State m_state = Unknown;
};

/// Who is logged in: the name of the user that the program runs as.
QString UserName();

/// The machine's name in its network.
QString MachineName();

/// A file that grows over the limit set for the process counts as a full disk from now on; before,
/// the machine ends the process.
void TakeFileSizeLimitAsFullDisk();

/// Reads a text value of the registry, which the Windows directory keeps in REGISTRY.INI: the key
/// ("HKEY_LOCAL_MACHINE\SOFTWARE\...") is the section; a value "dword:" and hexadecimal digits is a
/// 32-bit number and gives its decimal text. False and an empty text when there is no such value.
bool RegReadText(const QString &root, const QString &key, const QString &valueName, QString &text);

/// The desktop's work area in pixels; an empty rectangle when there is no screen.
QRect WorkArea();

/// Puts a form in the middle of the work area without changing its size, or at (0, 0) when the work
/// area is not known. A form larger than the work area keeps its title bar in view.
void CenterForm(QWidget &form);

/// The hourglass pointer for as long as the object lives.
class Hourglass
{
public:
    Hourglass();
    ~Hourglass();
    Hourglass(const Hourglass &) = delete;
    Hourglass &operator=(const Hourglass &) = delete;
};
