#include "tldb/check/ValueRules.h"

#include "data/dao/Rows.h"
#include "platform/ShiftJis.h"
#include "util/Decimal.h"
#include "util/VbText.h"
#include "util/bDate.h"

#include <QStringDecoder>
#include <algorithm>
#include <cmath>

namespace {

constexpr double QuantityLimit = 1e9; ///< 9 integer digits
constexpr int QuantityDecimals = 3;
constexpr double MostNeedDays = 3650;
constexpr double LastShpSubNo = 2147483646; ///< a split gets the next one
constexpr qsizetype ShownCharacters = 40;

bool IsDigits(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c >= '0' && c <= '9'; });
}

/// What only some columns may hold, besides what their type allows.
struct ColumnRule
{
    const char *column;
    bool (*isKept)(const QString &text);
    const char *what;
};

constexpr ColumnRule ColumnRules[] = {
    {"UpdTime",
     [](const QString &text) {
         return Trim(text).isEmpty() || (text.size() == 6 && IsDigits(text));
     },
     "is neither blank nor six digits"},
    {"AnsMark",
     [](const QString &text) { return Trim(text).isEmpty() || text == "1" || text == "2"; },
     "is neither blank nor 1 nor 2"},
    {"DpoFlg", [](const QString &text) { return text == "0" || text == "1" || text == "-1"; },
     "is neither 0 nor 1 nor -1"},
    {"PayNeedDays",
     [](const QString &text) { return text.toDouble() >= 0 && text.toDouble() <= MostNeedDays; },
     "gives no ship date"},
    {"ShpSubNo",
     [](const QString &text) { return text.toDouble() >= 1 && text.toDouble() <= LastShpSubNo; },
     "leaves no number for a split line"},
    {"ShpSts",
     [](const QString &text) { return text == "1" || text == "2" || text == "3" || text == "4"; },
     "is not 1 to 4"},
};

const ColumnRule *RuleOf(const ColumnDefinition &column)
{
    for (const ColumnRule &rule : ColumnRules)
        if (qstricmp(rule.column, column.name) == 0)
            return &rule;
    return nullptr;
}

bool IsAscii(QByteArrayView bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return uchar(byte) < 0x80; });
}

QString TextFault(const ColumnDefinition &column, QByteArrayView utf8)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = IsAscii(utf8) ? QString::fromLatin1(utf8) : decoder.decode(utf8);
    if (decoder.hasError())
        return "is not UTF-8";
    const auto fault = [&](const QString &what) { return what + ": " + Quoted(text); };
    if (text.size() > column.width)
        return fault(QString("has %1 characters, %2 fit").arg(text.size()).arg(column.width));
    if (text.endsWith(' '))
        return fault("ends in blanks");
    if (const QString characters = CharacterFault(text); !characters.isEmpty())
        return characters;
    if (column.type == ColumnType::Date && !text.isEmpty()
        && (!IsDigits(text) || !IsValidDate(text)))
        return fault("is not a date");
    const ColumnRule *rule = RuleOf(column);
    return rule && !rule->isKept(text) ? fault(rule->what) : QString();
}

QString NumberFault(const ColumnDefinition &column, double number)
{
    const auto shown = [number] { return QString::number(number, 'g', 15); };
    if (column.type == ColumnType::Integer && number != std::nearbyint(number))
        return "is not a whole number: " + shown();
    if (column.type == ColumnType::Quantity) {
        if (!(number >= 0 && number < QuantityLimit))
            return "is not from 0 to 9 integer digits: " + shown();
        const Decimal quantity = Decimal::FromDouble(number);
        // A number next to 0 shows as 0 but is none to the database.
        if (quantity != quantity.Rounded(QuantityDecimals) || (quantity.IsZero() && number != 0))
            return "has more than 3 decimals: " + shown();
    }
    const ColumnRule *rule = RuleOf(column);
    return rule && !rule->isKept(shown()) ? rule->what + (": " + shown()) : QString();
}

} // namespace

QString ValueFault(const ColumnDefinition &column, const RowValue &value)
{
    if (value.IsNull())
        return column.isKey ? "is null" : "";
    if (value.type == ValueType::Bytes || value.IsNumber() == column.IsText())
        return column.IsText() ? "is not a text" : "is not a number";
    return value.IsNumber() ? NumberFault(column, value.Number())
                            : TextFault(column, value.Bytes());
}

QString CharacterFault(const QString &text)
{
    static constexpr struct
    {
        bool (*isOne)(QChar c);
        const char *what;
    } kinds[] = {
        {[](QChar c) { return c.isNull(); }, "has NUL characters"},
        {[](QChar c) {
             return c.category() == QChar::Other_Control && c != '\t' && c != '\r' && c != '\n';
         },
         "has control characters"},
    };
    const auto fault = [&](const char *what, qsizetype at) {
        return what + (": " + Quoted(text.mid(at, ShownCharacters)));
    };
    for (const auto &[isOne, what] : kinds) {
        const auto first = std::find_if(text.begin(), text.end(), isOne);
        if (first != text.end())
            return fault(what, first - text.begin());
    }
    const QString own = ToCodePage(text);
    if (IsShiftJisText(own))
        return {};
    const auto other = std::find_if_not(text.begin(), text.end(),
                                        [](QChar c) { return IsShiftJisText(ToCodePage(c)); });
    return fault("has characters outside of Shift-JIS", other - text.begin());
}

QString Quoted(const QString &text)
{
    QString shown = "\"";
    for (const QChar c : text) {
        if (c == '"' || c == '\\')
            shown += QString('\\') + c;
        else if (c.category() == QChar::Other_Control)
            shown += QString("\\u%1").arg(c.unicode(), 4, 16, QChar('0'));
        else
            shown += c;
    }
    return shown + '"';
}
