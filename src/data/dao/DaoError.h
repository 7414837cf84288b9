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

namespace DaoErrors {
constexpr auto DatabaseSource = "DAO.Database";

constexpr int CannotOpen = 3051;
constexpr int CannotUpdate = 3027;
constexpr int CorruptFile = 3049;
constexpr int DiskError = 3043; ///< also of the network
constexpr int DiskFull = 3026;
constexpr int DuplicateKey = 3022;
constexpr int FileNotFound = 3024;
constexpr int InternalError = 3000;
constexpr int InvalidPassword = 3031;
constexpr int Locked = 3260;
constexpr int NoDriver = 3170;
constexpr int NoCurrentRecord = 3021;
constexpr int FileExists = 3204;
constexpr int ItemNotFound = 3265;
constexpr int PropertyNotFound = 3270;
constexpr int NullNotAllowed = 3314;
constexpr int RuleBroken = 3317;
constexpr int TypeMismatch = 3464;
constexpr int UnrecognizedFormat = 3343;
constexpr int SyntaxError = 3075;
constexpr int ObjectInvalid = 3420;
constexpr int Cancelled = 3059;

/// The error of this number with its description; `detail` (a name, a path, the library's own text)
/// follows the description where there is one.
DaoError Make(int number, const QString &source, const QString &detail = QString());
} // namespace DaoErrors
