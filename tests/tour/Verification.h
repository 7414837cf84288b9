#pragma once

#include <QString>
#include <QStringList>

/// What the tour left behind, held against what it should have.

/// The answer files under the folder, each as its path in it.
QStringList FindAnswerFiles(const QString &folder);

/// Writes every record of the answer files, decoded field by field, to one text file. Empty when
/// all is well, else what is wrong with a record.
QString WriteDecodedAnswers(const QString &folder, const QString &fileName);

/// Holds every record of the answer files against the order's lines in the database. Empty when
/// they agree, else the first difference.
QString CompareAnswersWithDatabase(const QString &folder);
