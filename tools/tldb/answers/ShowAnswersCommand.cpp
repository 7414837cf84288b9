#include "tldb/Commands.h"
#include "tldb/answers/AnswerFile.h"

#include <QCommandLineParser>
#include <QFile>
#include <algorithm>

int RunShowAnswers(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err)
{
    const QString path = arguments.positionalArguments().first();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Complain(err, path + ": " + file.errorString());
    const QByteArray bytes = file.readAll();
    if (file.error() != QFile::NoError)
        return Complain(err, path + ": " + file.errorString());

    const auto answers = DecodeAnswers(bytes);
    out << DescribeAnswers(answers,
                           arguments.isSet("json") ? AnswerFormat::Json : AnswerFormat::Plain);
    const auto malformed = std::count_if(answers.begin(), answers.end(),
                                         [](const auto &answer) { return !answer.faults.empty(); });
    if (malformed == 0)
        return ExitCode::Ok;
    return Complain(
        err,
        QString("%1: %2 of %3 records are malformed").arg(path).arg(malformed).arg(answers.size()));
}
