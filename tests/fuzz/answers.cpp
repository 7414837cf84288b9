// Any bytes as an answer file: every byte belongs to a record or to the end of its line, every
// oddity is a fault at a byte of its record, and what is shown of them harms no terminal.

#include "Fuzzing.h"

#include "output/RecordLayout.h"
#include "tldb/answers/AnswerFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray file(reinterpret_cast<const char *>(data), qsizetype(size));
    const std::vector<DecodedAnswer> answers = DecodeAnswers(file);
    QByteArray lines;
    for (const DecodedAnswer &answer : answers) {
        Require(answer.position == lines.size() + 1, "records follow each other");
        const qint64 end = answer.position + answer.length;
        for (const AnswerFault &fault : answer.faults)
            Require(fault.position >= answer.position && fault.position <= end,
                    "a fault is at a byte of its record", fault.what);
        const bool hasLayout
            = answer.length == ShortRecordLength || answer.length == LongRecordLength;
        Require(hasLayout != answer.values.empty(), "a record of a layout has values");
        Require(hasLayout || !answer.faults.empty(), "a record of another length has a fault");

        QByteArray lineEnd = file.mid(end - 1, 2);
        if (lineEnd != "\r\n") {
            Require(HasFaults({answer}), "a line that ends otherwise has a fault");
            lineEnd.truncate(lineEnd.startsWith('\n') || lineEnd == "\r" ? 1 : 0);
        }
        lines += file.mid(answer.position - 1, answer.length) + lineEnd;
    }
    Require(lines == file, "every byte belongs to a record");

    const QString plain = DescribeAnswers(answers, AnswerFormat::Plain);
    const auto isControl
        = [](QChar c) { return c != '\n' && c.category() == QChar::Other_Control; };
    Require(std::none_of(plain.begin(), plain.end(), isControl), "no control characters", plain);
    const QByteArray json = DescribeAnswers(answers, AnswerFormat::Json).toUtf8();
    Require(QJsonDocument::fromJson(json).array().size() == qsizetype(answers.size()),
            "the array has every record", QString::fromUtf8(json));
    return 0;
}
