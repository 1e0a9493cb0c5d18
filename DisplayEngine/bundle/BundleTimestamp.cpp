#include "bundle/BundleTimestamp.h"

namespace sorvane {

namespace {

bool isBlank(const QString &text)
{
    // Spaces and tabs only: a newline makes the text non-blank (and unparsable).
    for (const QChar c : text) {
        if (c != u' ' && c != u'\t')
            return false;
    }
    return true;
}

// Reads `count` decimal digits at `at`; -1 when any is not a digit.
int digits(QStringView text, qsizetype at, int count)
{
    int value = 0;
    for (int i = 0; i < count; ++i) {
        const char16_t c = text[at + i].unicode();
        if (c < u'0' || c > u'9')
            return -1;
        value = value * 10 + (c - u'0');
    }
    return value;
}

bool isAt(QStringView text, qsizetype at, char16_t c)
{
    return at < text.size() && text[at] == c;
}

} // namespace

// The internet date-time form exactly: 2024-05-01T12:00:00, optional fraction,
// then Z or an offset such as +02:00. Written out by hand because a manifest
// holds tens of thousands of these, and the platform's ISO parser also accepts
// forms a manifest must not carry (no zone, read as local time; a date alone).
std::optional<QDateTime> BundleTimestamp::parse(const std::optional<QString> &text)
{
    if (!text || isBlank(*text))
        return std::nullopt;
    // Trimming only decides blankness; the stored text is parsed as it is.
    const QStringView t(*text);
    if (t.size() < 20 || !isAt(t, 4, u'-') || !isAt(t, 7, u'-') || !isAt(t, 10, u'T') || !isAt(t, 13, u':')
        || !isAt(t, 16, u':'))
        return std::nullopt;
    const int year = digits(t, 0, 4), month = digits(t, 5, 2), day = digits(t, 8, 2);
    const int hour = digits(t, 11, 2), minute = digits(t, 14, 2), second = digits(t, 17, 2);
    if (year < 0 || month < 0 || day < 0 || hour < 0 || minute < 0 || second < 0)
        return std::nullopt;

    qsizetype at = 19;
    int milliseconds = 0;
    if (isAt(t, at, u'.')) {
        const qsizetype first = ++at;
        int scale = 100;
        for (; at < t.size() && t[at] >= u'0' && t[at] <= u'9'; ++at) {
            milliseconds += (t[at].unicode() - u'0') * scale;
            scale /= 10;
        }
        if (at == first)
            return std::nullopt;
    }

    int offsetSeconds = 0;
    if (isAt(t, at, u'Z')) {
        ++at;
    } else if (isAt(t, at, u'+') || isAt(t, at, u'-')) {
        if (t.size() - at < 6 || !isAt(t, at + 3, u':'))
            return std::nullopt;
        const int offsetHours = digits(t, at + 1, 2), offsetMinutes = digits(t, at + 4, 2);
        if (offsetHours < 0 || offsetMinutes < 0 || offsetHours > 23 || offsetMinutes > 59)
            return std::nullopt;
        offsetSeconds = (offsetHours * 60 + offsetMinutes) * 60 * (t[at] == u'-' ? -1 : 1);
        at += 6;
    } else {
        return std::nullopt;
    }
    if (at != t.size())
        return std::nullopt;

    const QDate date(year, month, day);
    const QTime time(hour, minute, second, milliseconds);
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(date, time, Qt::UTC).addSecs(-offsetSeconds);
}

QString BundleTimestamp::format(const QDateTime &date)
{
    return date.toUTC().toString(Qt::ISODate);
}

} // namespace sorvane
