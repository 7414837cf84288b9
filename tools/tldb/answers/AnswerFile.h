#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

/// A field's name and its value as text: a text without its trailing blanks, a date as "YYYYMMDD"
/// (empty for a blank one, "99999999" for no answered date), a quantity as plain digits ("12.5").
/// Half of a double-byte character at a text's end, and each byte of a malformed field that is no
/// character, is U+FFFD.
struct AnswerValue
{
    QString name;
    QString text;
};

/// One delivery of the order that a record answers.
struct AnsweredDelivery
{
    int slot = 0; ///< 1 to 31
    std::vector<AnswerValue> values;
};

/// Something that a record may not hold.
struct AnswerFault
{
    qint64 position = 0; ///< of the byte in the file, counted from 1
    QString what;
};

/// A record as it was read. One whose length fits no layout has no values.
struct DecodedAnswer
{
    qint64 position = 0;  ///< of its first byte in the file, counted from 1
    qsizetype length = 0; ///< in bytes, line end not counted
    std::vector<AnswerValue> values;
    std::vector<AnsweredDelivery> deliveries; ///< of the slots that are filled
    std::vector<AnswerFault> faults;

    /// The value of a field; a null text when the record does not have it.
    QString Value(const QString &name) const;
};

/// Reads an answer file of either layout, record by record; any bytes will do. A record is a line;
/// what is wrong with it is among its faults, and reading goes on with the next line.
std::vector<DecodedAnswer> DecodeAnswers(const QByteArray &bytes);

/// True when any record has a fault.
bool HasFaults(const std::vector<DecodedAnswer> &answers);

enum class AnswerFormat {
    Plain, ///< "name: value" lines, an empty line after each record
    Json,  ///< an array of objects, every value a text
};

/// The records of a file for people or for programs.
QString DescribeAnswers(const std::vector<DecodedAnswer> &answers, AnswerFormat format);
inline QString DescribeAnswers(const QByteArray &bytes, AnswerFormat format)
{
    return DescribeAnswers(DecodeAnswers(bytes), format);
}
