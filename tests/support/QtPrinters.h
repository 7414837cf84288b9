#pragma once

#include <QByteArray>
#include <QString>
#include <ostream>

// How a failed comparison shows Qt's values: as text, not as lists of character codes.

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << QString(text).replace('\r', "\\r").replace('\n', "\\n").toStdString() << '"';
}

inline void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << bytes.size() << " bytes " << bytes.left(200).toPercentEncoding(" ").toStdString();
}
