#pragma once

#include <QString>

class QFileDevice;

/// The numbers by which the run-time names an error; 0 is "no error".
namespace RuntimeError {
constexpr int None = 0;
constexpr int SubscriptOutOfRange = 9;
constexpr int BadFileName = 52;
constexpr int FileNotFound = 53;
constexpr int DeviceIo = 57;
constexpr int FileExists = 58;
constexpr int DiskFull = 61;
constexpr int TooManyFiles = 67;
constexpr int PermissionDenied = 70;
constexpr int DiskNotReady = 71;
constexpr int PathFileAccess = 75;
constexpr int PathNotFound = 76;

/// The operator's description of an error number; a general one for a number not listed.
QString Description(int number);

/// The error number of an errno that a call on a file or folder left.
int FromErrno(int error);

/// The error number of what has happened to a file.
int OfFile(const QFileDevice &file);
} // namespace RuntimeError
