#pragma once

#include <QString>

/// What the engine throws, and what its error collection holds: the engine's error number, its
/// description in the operator's language, the object that failed, and the name, path or library's
/// own text that the description ends with, which may be empty.
struct DaoError
{
    int number = 0;
    QString description;
    QString source;
    QString detail = {};
};

struct sqlite3;

namespace DaoErrors {
constexpr int CannotUpdate = 3027;
constexpr int CorruptFile = 3049;
constexpr int DuplicateKey = 3022;
constexpr int FileNotFound = 3024;
constexpr int InvalidPassword = 3031;
constexpr int Locked = 3260;
constexpr int NoCurrentRecord = 3021;
constexpr int FileExists = 3204;
constexpr int ItemNotFound = 3265;
constexpr int PropertyNotFound = 3270;
constexpr int NullNotAllowed = 3314;
constexpr int UnrecognizedFormat = 3343;
constexpr int SyntaxError = 3075;
constexpr int ObjectInvalid = 3420;
constexpr int Cancelled = 3059;

/// The error of this number with its description; `detail` (a name, a path, the library's own text)
/// follows the description where there is one.
DaoError Make(int number, const QString &source, const QString &detail = QString());

/// The error that the last call on the connection left.
DaoError FromSqlite(sqlite3 *connection, const QString &source);
} // namespace DaoErrors
