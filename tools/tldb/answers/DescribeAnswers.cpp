#include "tldb/answers/AnswerFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace {

/// Control characters of a malformed record must not upset the terminal.
QString Printable(QString text)
{
    for (QChar &c : text)
        if (c.category() == QChar::Other_Control)
            c = QChar(QChar::ReplacementCharacter);
    return text;
}

QString Line(const AnswerValue &value)
{
    return value.name + ": " + Printable(value.text);
}

QString DescribePlain(const DecodedAnswer &answer)
{
    QStringList lines
        = {QString("position: %1").arg(answer.position), QString("length: %1").arg(answer.length)};
    for (const AnswerValue &value : answer.values)
        lines += Line(value);
    for (const AnsweredDelivery &delivery : answer.deliveries)
        for (const AnswerValue &value : delivery.values)
            lines += QString("delivery %1 ").arg(delivery.slot) + Line(value);
    for (const AnswerFault &fault : answer.faults)
        lines += QString("fault: byte %1: %2").arg(fault.position).arg(fault.what);
    return lines.join('\n') + "\n\n";
}

void Insert(QJsonObject &object, const std::vector<AnswerValue> &values)
{
    for (const AnswerValue &value : values)
        object.insert(value.name, value.text);
}

QJsonObject DescribeJson(const DecodedAnswer &answer)
{
    QJsonArray deliveries;
    for (const AnsweredDelivery &delivery : answer.deliveries) {
        QJsonObject object{{"slot", delivery.slot}};
        Insert(object, delivery.values);
        deliveries.append(object);
    }
    QJsonArray faults;
    for (const AnswerFault &fault : answer.faults)
        faults.append(QJsonObject{{"position", fault.position}, {"what", fault.what}});
    QJsonObject object{{"position", answer.position},
                       {"length", qint64(answer.length)},
                       {"deliveries", deliveries},
                       {"faults", faults}};
    Insert(object, answer.values);
    return object;
}

} // namespace

QString DescribeAnswers(const std::vector<DecodedAnswer> &answers, AnswerFormat format)
{
    if (format == AnswerFormat::Json) {
        QJsonArray records;
        for (const DecodedAnswer &answer : answers)
            records.append(DescribeJson(answer));
        return QString::fromUtf8(QJsonDocument(records).toJson());
    }
    QString text;
    for (const DecodedAnswer &answer : answers)
        text += DescribePlain(answer);
    return text;
}
