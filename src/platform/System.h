#pragma once

#include <QRect>
#include <QString>
#include <memory>

class OpenFile;
class QWidget;

/// The Windows directory: $WINDIR, else /etc/talven. No trailing separator.
QString GetWindowsDir();

/// Keeps this user's one running copy of the program. IsFirst is False when another copy runs.
class PreviousInstance
{
public:
    explicit PreviousInstance(const QString &programName);
    ~PreviousInstance();
    bool IsFirst() const { return m_isFirst; }

private:
    std::unique_ptr<OpenFile> m_lock;
    bool m_isFirst;
};

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
