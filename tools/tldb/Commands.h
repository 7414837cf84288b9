#pragma once

#include <QString>
#include <QStringList>
#include <QTextStream>

class QCommandLineParser;

/// What the tool's process returns.
namespace ExitCode {
constexpr int Ok = 0;
constexpr int Found = 1; ///< something was found, or the work could not be done
constexpr int WrongUse = 2;
} // namespace ExitCode

/// Runs one command. `arguments` begins with the command's name. What was asked for goes to `out`,
/// errors go to `err` in one line each. Returns an ExitCode.
int RunTool(const QStringList &arguments, QTextStream &out, QTextStream &err);

// What the commands use to speak with one voice.

/// Writes one line to `err`; line breaks in the text become blanks. Returns `exitCode`.
int Complain(QTextStream &err, const QString &text, int exitCode = ExitCode::Found);

/// The commands. Each gets the parsed arguments after its name, the options of its own among them.
int RunCreate(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err);
int RunDemo(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err);
int RunCheck(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err);
int RunImport(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err);
int RunUpgrade(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err);
int RunHistory(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err);
int RunMove(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err);
int RunShowAnswers(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err);
int RunExportAnswers(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err);
int RunCheckSheet(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err);
