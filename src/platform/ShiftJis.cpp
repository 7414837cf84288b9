#include "platform/ShiftJis.h"

#include <QStringDecoder>
#include <QStringEncoder>
#include <algorithm>
#include <optional>

namespace {

constexpr auto CodePage932 = "windows-31j";

bool IsAscii(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

/// The library's table of the code page has these three control characters in each other's places.
/// None of them is half of a double-byte character.
bool IsMisplaced(char byte)
{
    return byte == '\x1a' || byte == '\x1c' || byte == '\x7f';
}

char InItsPlace(char encoded)
{
    switch (encoded) {
    case '\x7f':
        return '\x1a';
    case '\x1a':
        return '\x1c';
    case '\x1c':
        return '\x7f';
    default:
        return encoded;
    }
}

/// Encodes and tells through `complete` whether every character was in the code page.
QByteArray Encode(QStringView text, bool &complete)
{
    // Once set, the encoder's error flag stays, also over a reset: such an encoder is done for.
    static thread_local std::optional<QStringEncoder> encoder;
    if (!encoder || encoder->hasError())
        encoder.emplace(CodePage932, QStringConverter::Flag::Stateless);
    QByteArray bytes = encoder->encode(text);
    complete = !encoder->hasError();
    std::transform(bytes.begin(), bytes.end(), bytes.begin(), InItsPlace);
    return bytes;
}

/// Decodes bytes without a misplaced one.
QString Decode(QByteArrayView bytes)
{
    static thread_local QStringDecoder decoder(CodePage932, QStringConverter::Flag::Stateless);
    decoder.resetState();
    // Half a character at the end is only seen when something follows it. The decoder writes SUB
    // for bad bytes.
    QString text = decoder.decode(bytes.toByteArray() + '\n');
    text.chop(1);
    return text.replace(QChar(0x1a), QChar::ReplacementCharacter);
}

/// The table's character for one that other systems write in its stead; any other as it is.
QChar TableTwin(QChar c)
{
    static constexpr struct
    {
        char16_t other;
        char16_t own;
    } twins[] = {
        {u'\u301c', u'\uff5e'}, // wave dash
        {u'\u2212', u'\uff0d'}, // minus sign
        {u'\u2016', u'\u2225'}, // double vertical line
        {u'\u2014', u'\u2015'}, // em dash
        {u'\u00a2', u'\uffe0'}, // cent
        {u'\u00a3', u'\uffe1'}, // pound
        {u'\u00ac', u'\uffe2'}, // not sign
        {u'\u203e', u'\uffe3'}, // overline
        {u'\u00a6', u'\uffe4'}, // broken bar
        {u'\u00a5', u'\uffe5'}, // yen
        {u'\u00b5', u'\u03bc'}, // micro sign
        {u'\u00c5', u'\u212b'}, // angstrom
        {u'\u00a0', u' '},      // no-break space
        {u'\u3099', u'\u309b'}, // voiced and semi-voiced marks that no kana takes up
        {u'\u309a', u'\u309c'},
    };
    for (const auto &[other, own] : twins)
        if (c == other)
            return own;
    return c;
}

} // namespace

QByteArray ToShiftJis(QStringView text, bool *isComplete)
{
    if (IsAscii(text))
        return text.toLatin1();
    bool complete = false;
    const QByteArray whole = Encode(text, complete);
    if (complete)
        return whole;
    if (isComplete)
        *isComplete = false;

    QByteArray bytes;
    for (qsizetype at = 0; at < text.size();) {
        const bool isPair
            = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
        const qsizetype length = isPair ? 2 : 1;
        const QByteArray one = Encode(text.mid(at, length), complete);
        bytes += complete ? one : QByteArray("?");
        at += length;
    }
    return bytes;
}

QString FromShiftJis(QByteArrayView bytes)
{
    if (std::all_of(bytes.begin(), bytes.end(), [](char byte) { return uchar(byte) < 0x80; }))
        return QString::fromLatin1(bytes);
    QString text;
    for (auto start = bytes.begin();;) {
        const auto end = std::find_if(start, bytes.end(), IsMisplaced);
        text += Decode(bytes.sliced(start - bytes.begin(), end - start));
        if (end == bytes.end())
            return text;
        text += QLatin1Char(*end);
        start = end + 1;
    }
}

int ShiftJisLength(QStringView text)
{
    return int(ToShiftJis(text).size());
}

bool IsShiftJisText(QStringView text)
{
    bool complete = true;
    if (!IsAscii(text))
        Encode(text, complete);
    return complete;
}

QString ToCodePage(const QString &text)
{
    if (IsShiftJisText(text))
        return text;
    QString own;
    for (const QChar c : text) {
        if (IsShiftJisText(QStringView(&c, 1))) {
            own += c;
            continue;
        }
        // Only what the table lacks is composed: it has characters that Unicode would unite.
        if (c.isMark() && !own.isEmpty()) {
            const QString composed
                = (own.back() + QString(c)).normalized(QString::NormalizationForm_C);
            if (composed.size() == 1 && IsShiftJisText(composed)) {
                own.back() = composed[0];
                continue;
            }
        }
        const QString united = QString(c).normalized(QString::NormalizationForm_C);
        own += IsShiftJisText(united) ? united : QString(TableTwin(c));
    }
    return own;
}
