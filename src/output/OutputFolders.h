#pragma once

#include "data/ProgramState.h"

#include <QString>

/// An information kind of the suite: where the customer master keeps its output path and switch.
struct InfoKind
{
    const char *code;
    const char *pathColumn;
    const char *switchColumn;
    const char *name;
};

/// The kind of this code ("0702", ...); null for an unknown one.
const InfoKind *FindInfoKind(const QString &code);

/// The distinct output paths in use for the kind.
QString BuildPathsSql(const InfoKind &kind);

/// The customers that use a path for the kind, by their code.
QString BuildPathUsersSql(const InfoKind &kind, const QString &path);

/// True when every output path in use for the kind can be written. Else False with the reason and
/// the first customer concerned in `message`; an unknown kind fails with an empty message.
bool CheckInfoOutputPaths(bDAO &db, const Files &files, const QString &infoKindCode,
                          QString &message);

/// True when the folder of the file exists, or could be created, and a file can be written in it.
/// Else False with the reason in `message`.
bool CheckOutputFolder(const Files &files, const QString &filePath, QString &message);

/// The check of the answer files' folders at start-up; shows its message when it fails.
bool CheckAnswerOutputPaths(bDAO &db, const Files &files);
