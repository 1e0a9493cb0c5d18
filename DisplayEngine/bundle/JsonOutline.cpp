#include "bundle/JsonOutline.h"

#include <QHash>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale.h>
#include <string>

namespace sorvane {

namespace {

using Error = QJsonParseError::ParseError;

// Qt's parser refuses documents nested deeper than this.
constexpr qsizetype nestingLimit = 1024;
// Names longer than this are never among those asked for, so they are not decoded.
constexpr qsizetype longestName = 64;

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}
bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

int hexValue(char c)
{
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// Length of the well-formed UTF-8 sequence at `s` (no overlong forms, surrogates or
// code points past U+10FFFF), or 0.
qsizetype utf8Length(const unsigned char *s, qsizetype available)
{
    const unsigned char c = s[0];
    qsizetype length = 0;
    unsigned char low = 0x80, high = 0xBF;
    if (c >= 0xC2 && c <= 0xDF) {
        length = 2;
    } else if (c >= 0xE0 && c <= 0xEF) {
        length = 3;
        low = c == 0xE0 ? 0xA0 : 0x80;
        high = c == 0xED ? 0x9F : 0xBF;
    } else if (c >= 0xF0 && c <= 0xF4) {
        length = 4;
        low = c == 0xF0 ? 0x90 : 0x80;
        high = c == 0xF4 ? 0x8F : 0xBF;
    } else {
        return 0;
    }
    if (available < length || s[1] < low || s[1] > high)
        return 0;
    for (qsizetype k = 2; k < length; ++k) {
        if (s[k] < 0x80 || s[k] > 0xBF)
            return 0;
    }
    return length;
}

// Whether a number token is one Qt takes: an integer that fits 64 bits, or a double that
// neither overflows nor underflows to zero. Read in the C locale, whatever the program's.
bool numberFits(const char *token, qsizetype length, bool isInteger)
{
    std::string copy(token, size_t(length));
    if (isInteger) {
        errno = 0;
        char *end = nullptr;
        std::strtoll(copy.c_str(), &end, 10);
        if (errno == 0 && end == copy.c_str() + copy.size())
            return true;
    }
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", locale_t(nullptr));
    char *end = nullptr;
    const double value = strtod_l(copy.c_str(), &end, cLocale);
    if (end != copy.c_str() + copy.size() || std::isinf(value))
        return false;
    if (value != 0)
        return true;
    // Zero is only right when every digit before the exponent is a zero.
    for (char c : copy) {
        if (c == 'e' || c == 'E')
            break;
        if (c >= '1' && c <= '9')
            return false;
    }
    return true;
}

// Checked UTF-8 as UTF-16, a leading byte order mark kept (QString::fromUtf8 would drop it,
// where Qt's parser keeps it in a name).
QString utf16(const char *text, qsizetype size)
{
    QString result;
    result.reserve(size);
    const auto *s = reinterpret_cast<const unsigned char *>(text);
    for (qsizetype i = 0; i < size;) {
        const qsizetype length = s[i] < 0x80 ? 1 : utf8Length(s + i, size - i);
        char32_t code = length == 1 ? s[i] : s[i] & (0x7F >> length);
        for (qsizetype k = 1; k < length; ++k)
            code = (code << 6) | (s[i + k] & 0x3F);
        result += QChar::fromUcs4(code);
        i += std::max<qsizetype>(length, 1);
    }
    return result;
}

class Walker {
public:
    Walker(const QByteArray &text, std::span<const QLatin1StringView> names, QLatin1StringView listName,
        qsizetype maxEntries, JsonOutline &out)
        : m_text(text.constData()), m_size(text.size()), m_names(names), m_listName(listName), m_maxEntries(maxEntries),
          m_out(out)
    {
    }

    void run()
    {
        if (m_size >= 3 && std::memcmp(m_text, "\xEF\xBB\xBF", 3) == 0)
            m_at = 3;
        skipSpace();
        if (m_at >= m_size || (m_text[m_at] != '{' && m_text[m_at] != '['))
            return fail(QJsonParseError::IllegalValue, m_at);
        m_out.isObject = m_text[m_at] == '{';
        if (!walk())
            return;
        m_out.error = QJsonParseError {0, QJsonParseError::NoError};
        std::sort(m_otherNames.begin(), m_otherNames.end());
        m_out.otherMembers = std::unique(m_otherNames.begin(), m_otherNames.end()) - m_otherNames.begin();
    }

private:
    enum class Member { none, named, list, other };

    void fail(Error error, qsizetype at)
    {
        m_out.error.error = error;
        m_out.error.offset = int(std::min<qsizetype>(at, std::numeric_limits<int>::max()));
        m_out.isObject = false;
        m_out.members.clear();
        m_out.entries.clear();
    }

    void skipSpace()
    {
        while (m_at < m_size && isSpace(m_text[m_at]))
            ++m_at;
    }

    bool walk()
    {
        for (;;) {
            skipSpace();
            if (m_at >= m_size) {
                fail(QJsonParseError::IllegalValue, m_at);
                return false;
            }
            valueStarts();
            const char c = m_text[m_at];
            if (c == '{' || c == '[') {
                if (qsizetype(m_stack.size()) >= nestingLimit) {
                    fail(QJsonParseError::DeepNesting, m_at + 1);
                    return false;
                }
                m_stack.push_back(c);
                ++m_at;
                skipSpace();
                const char close = c == '{' ? '}' : ']';
                if (m_at < m_size && m_text[m_at] == close) {
                    ++m_at;
                    m_stack.pop_back();
                } else if (c == '[' || name()) {
                    continue;
                } else {
                    return false;
                }
            } else if (!scalar()) {
                return false;
            }
            // The value is complete: close what it completes, up to the next value.
            for (;;) {
                valueEnds();
                if (m_stack.empty()) {
                    skipSpace();
                    if (m_at < m_size) {
                        fail(QJsonParseError::GarbageAtEnd, m_at);
                        return false;
                    }
                    return true;
                }
                const bool inObject = m_stack.back() == '{';
                skipSpace();
                if (m_at >= m_size) {
                    fail(inObject ? QJsonParseError::UnterminatedObject : QJsonParseError::UnterminatedArray, m_at);
                    return false;
                }
                const char d = m_text[m_at++];
                if (d == (inObject ? '}' : ']')) {
                    m_stack.pop_back();
                    continue;
                }
                if (d != ',') {
                    fail(inObject ? QJsonParseError::UnterminatedObject : QJsonParseError::MissingValueSeparator, m_at);
                    return false;
                }
                skipSpace();
                if (m_at < m_size && m_text[m_at] == (inObject ? '}' : ']')) {
                    fail(QJsonParseError::MissingObject, m_at + 1);
                    return false;
                }
                if (inObject && !name())
                    return false;
                break;
            }
        }
    }

    // A member's name and its separator; at the top level, which member it is.
    bool name()
    {
        skipSpace();
        if (m_at >= m_size || m_text[m_at] != '"') {
            fail(QJsonParseError::UnterminatedObject, m_at);
            return false;
        }
        const qsizetype begin = m_at;
        bool escaped = false;
        if (!string(&escaped))
            return false;
        if (m_stack.size() == 1) {
            m_memberBegin = begin;
            m_member = classify(begin + 1, m_at - 1, escaped);
            if (m_member == Member::other)
                m_otherNames.push_back(nameHash(begin + 1, m_at - 1, escaped));
        }
        skipSpace();
        if (m_at >= m_size || m_text[m_at] != ':') {
            fail(QJsonParseError::MissingNameSeparator, m_at + 1);
            return false;
        }
        ++m_at;
        return true;
    }

    // Other members are counted once per distinct name, as Qt keeps them; a hash per name
    // is all that is held. Names are hashed as UTF-8 once their escapes are undone, or as
    // UTF-16 when an escape leaves a lone surrogate that UTF-8 cannot carry.
    size_t nameHash(qsizetype begin, qsizetype end, bool escaped) const
    {
        if (!escaped)
            return qHash(QByteArrayView(m_text + begin, end - begin), 0);
        const QString name = unescape(begin, end);
        for (qsizetype i = 0; i < name.size(); ++i) {
            const QChar c = name.at(i);
            if (c.isHighSurrogate() && i + 1 < name.size() && name.at(i + 1).isLowSurrogate())
                ++i;
            else if (c.isSurrogate())
                return qHash(name, 1);
        }
        return qHash(name.toUtf8(), 0);
    }

    Member classify(qsizetype begin, qsizetype end, bool escaped)
    {
        if (end - begin > longestName)
            return Member::other;
        const QString name = escaped ? unescape(begin, end) : utf16(m_text + begin, end - begin);
        if (name == m_listName)
            return Member::list;
        for (qsizetype i = 0; i < qsizetype(m_names.size()); ++i) {
            if (name == m_names[size_t(i)]) {
                m_named = i;
                return Member::named;
            }
        }
        return Member::other;
    }

    // A checked string's text as Qt reads it: an unknown escape stands for its character.
    QString unescape(qsizetype begin, qsizetype end) const
    {
        QString result;
        for (qsizetype i = begin; i < end;) {
            if (m_text[i] != '\\') {
                const qsizetype from = i;
                while (i < end && m_text[i] != '\\')
                    ++i;
                result += utf16(m_text + from, i - from);
                continue;
            }
            const char e = m_text[i + 1];
            i += 2;
            switch (e) {
            case 'b':
                result += QLatin1Char('\b');
                break;
            case 'f':
                result += QLatin1Char('\f');
                break;
            case 'n':
                result += QLatin1Char('\n');
                break;
            case 'r':
                result += QLatin1Char('\r');
                break;
            case 't':
                result += QLatin1Char('\t');
                break;
            case 'u': {
                char16_t unit = 0;
                for (qsizetype k = 0; k < 4; ++k)
                    unit = char16_t(unit * 16 + hexValue(m_text[i + k]));
                result += QChar(unit);
                i += 4;
                break;
            }
            default:
                // Any other byte stands for itself, as a Latin-1 character.
                result += QLatin1Char(e);
            }
        }
        return result;
    }

    bool string(bool *escaped = nullptr)
    {
        const auto *s = reinterpret_cast<const unsigned char *>(m_text);
        for (++m_at; m_at < m_size;) {
            const unsigned char c = s[m_at];
            if (c == '"') {
                ++m_at;
                return true;
            }
            if (c == '\\') {
                if (escaped)
                    *escaped = true;
                if (++m_at >= m_size)
                    break;
                if (s[m_at] == 'u') {
                    for (qsizetype k = 1; k <= 4; ++k) {
                        if (m_at + k >= m_size || hexValue(m_text[m_at + k]) < 0) {
                            fail(QJsonParseError::IllegalEscapeSequence, m_at + k);
                            return false;
                        }
                    }
                    m_at += 5;
                    continue;
                }
                // Any other escaped byte stands for itself, alone, as Qt reads it.
                ++m_at;
                continue;
            }
            if (s[m_at] < 0x80) {
                ++m_at;
                continue;
            }
            const qsizetype length = utf8Length(s + m_at, m_size - m_at);
            if (length == 0) {
                fail(QJsonParseError::IllegalUTF8String, m_at);
                return false;
            }
            m_at += length;
        }
        fail(QJsonParseError::UnterminatedString, m_at);
        return false;
    }

    bool literal(const char *word)
    {
        const qsizetype length = qsizetype(std::strlen(word));
        if (m_size - m_at < length || std::memcmp(m_text + m_at, word, size_t(length)) != 0) {
            fail(QJsonParseError::IllegalValue, m_at + 1);
            return false;
        }
        m_at += length;
        return true;
    }

    bool scalar()
    {
        switch (m_text[m_at]) {
        case '"':
            return string();
        case 't':
            return literal("true");
        case 'f':
            return literal("false");
        case 'n':
            return literal("null");
        default:
            return number();
        }
    }

    // Qt's number grammar, which also takes "1." and ".5".
    bool number()
    {
        const qsizetype begin = m_at;
        bool isInteger = true;
        if (m_text[m_at] == '-')
            ++m_at;
        if (m_at < m_size && m_text[m_at] == '0') {
            ++m_at;
        } else {
            while (m_at < m_size && isDigit(m_text[m_at]))
                ++m_at;
        }
        if (m_at < m_size && m_text[m_at] == '.') {
            isInteger = false;
            for (++m_at; m_at < m_size && isDigit(m_text[m_at]);)
                ++m_at;
        }
        if (m_at < m_size && (m_text[m_at] == 'e' || m_text[m_at] == 'E')) {
            isInteger = false;
            ++m_at;
            if (m_at < m_size && (m_text[m_at] == '-' || m_text[m_at] == '+'))
                ++m_at;
            while (m_at < m_size && isDigit(m_text[m_at]))
                ++m_at;
        }
        if (m_at >= m_size) {
            fail(QJsonParseError::TerminationByNumber, m_at);
            return false;
        }
        if (m_at == begin || !numberFits(m_text + begin, m_at - begin, isInteger)) {
            fail(QJsonParseError::IllegalNumber, m_at);
            return false;
        }
        return true;
    }

    // Outline bookkeeping: a value starting or ending right inside the top-level object
    // is a member's; right inside the list, an entry's.
    void valueStarts()
    {
        ++m_values;
        if (!m_out.isObject)
            return;
        if (m_stack.size() == 1) {
            m_valuesBefore = m_values - 1;
            if (m_member == Member::list) {
                m_out.hasList = true;
                m_out.listIsArray = m_text[m_at] == '[';
                m_out.entries.clear();
                m_out.entryCount = 0;
            }
        } else if (m_stack.size() == 2 && m_member == Member::list) {
            m_entryBegin = m_at;
            m_entryValuesBefore = m_values - 1;
        }
    }

    void valueEnds()
    {
        if (!m_out.isObject)
            return;
        if (m_stack.size() == 1) {
            const JsonOutline::Span span {m_memberBegin, m_at, m_values - m_valuesBefore};
            switch (m_member) {
            case Member::list:
                m_out.list = span;
                break;
            case Member::named:
                keep(span);
                break;
            case Member::other:
            case Member::none:
                break;
            }
            m_member = Member::none;
        } else if (m_stack.size() == 2 && m_member == Member::list) {
            if (m_out.entryCount++ < m_maxEntries)
                m_out.entries.push_back({m_entryBegin, m_at, m_values - m_entryValuesBefore});
        }
    }

    void keep(const JsonOutline::Span &span)
    {
        const QLatin1StringView name = m_names[size_t(m_named)];
        for (JsonOutline::Member &member : m_out.members) {
            if (member.name == name) {
                member.span = span;
                return;
            }
        }
        m_out.members.push_back({name, span});
    }

    const char *m_text;
    qsizetype m_size;
    std::span<const QLatin1StringView> m_names;
    QLatin1StringView m_listName;
    qsizetype m_maxEntries;
    JsonOutline &m_out;

    qsizetype m_at = 0;
    std::vector<char> m_stack;
    std::vector<size_t> m_otherNames;
    qsizetype m_values = 0;
    Member m_member = Member::none;
    qsizetype m_named = 0;
    qsizetype m_memberBegin = 0;
    qsizetype m_valuesBefore = 0;
    qsizetype m_entryBegin = 0;
    qsizetype m_entryValuesBefore = 0;
};

} // namespace

JsonOutline JsonOutline::of(
    const QByteArray &text, std::span<const QLatin1StringView> names, QLatin1StringView listName, qsizetype maxEntries)
{
    JsonOutline outline;
    outline.error = QJsonParseError {0, QJsonParseError::IllegalValue};
    Walker(text, names, listName, maxEntries, outline).run();
    return outline;
}

} // namespace sorvane
