#include "forms/WindowMemory.h"

#include <QSettings>
#include <QStandardPaths>
#include <QStringList>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace {

constexpr auto AllWindows = "Windows";

/// Writes a value; a null one is taken away.
void Keep(const QString &key, const QVariant &value)
{
    QSettings settings(WindowMemory::File(), QSettings::IniFormat);
    if (settings.value(key) == value)
        return;
    if (value.isNull())
        settings.remove(key);
    else
        settings.setValue(key, value);
}

QVariant Kept(const QString &key)
{
    return QSettings(WindowMemory::File(), QSettings::IniFormat).value(key);
}

} // namespace

WindowMemory::WindowMemory(const QWidget &window)
    : m_group(QString(AllWindows) + '/' + window.objectName() + '/')
    , m_line(std::max(1, window.fontMetrics().height()))
{
}

QString WindowMemory::File()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
           + "/talven/TL030101.ini";
}

void WindowMemory::ForgetAll()
{
    QSettings(File(), QSettings::IniFormat).remove(AllWindows);
}

std::vector<int> WindowMemory::Lengths(const QString &key) const
{
    constexpr double Most = 1000; // lines: nothing is as long
    std::vector<int> lengths;
    for (const QString &lines : Kept(m_group + key).toStringList())
        lengths.push_back(int(std::lround(std::clamp(lines.toDouble(), 0.0, Most) * m_line)));
    return lengths;
}

void WindowMemory::SetLengths(const QString &key, const std::vector<int> &lengths)
{
    QStringList lines;
    for (const int length : lengths)
        lines += QString::number(length / m_line);
    const bool isNone = std::ranges::all_of(lengths, [](int length) { return length <= 0; });
    Keep(m_group + key, isNone ? QVariant() : QVariant(lines));
}

QSize WindowMemory::Size() const
{
    const std::vector<int> lengths = Lengths("size");
    return lengths.size() == 2 ? QSize(lengths[0], lengths[1]) : QSize();
}

void WindowMemory::SetSize(const QSize &size)
{
    SetLengths("size", {size.width(), size.height()});
}

std::vector<int> WindowMemory::Widths(const QString &grid) const
{
    return Lengths(grid);
}

void WindowMemory::SetWidths(const QString &grid, const std::vector<int> &widths)
{
    SetLengths(grid, widths);
}

bool WindowMemory::Flag(const QString &name) const
{
    return Kept(m_group + name).toBool();
}

void WindowMemory::SetFlag(const QString &name, bool isOn)
{
    Keep(m_group + name, isOn ? QVariant(true) : QVariant());
}
