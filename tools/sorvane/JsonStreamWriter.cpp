#include "JsonStreamWriter.h"

namespace sorvane::cli {

void JsonStreamWriter::end()
{
    const Level level = m_levels.back();
    m_levels.pop_back();
    if (!level.empty)
        newline();
    m_buffer += level.close;
    flushIfLarge();
}

void JsonStreamWriter::key(const QString &name)
{
    separate();
    BundleJSON(name).appendPretty(m_buffer, 0);
    m_buffer += ": ";
    m_afterKey = true;
}

void JsonStreamWriter::value(const BundleJSON &value)
{
    separate();
    value.appendPretty(m_buffer, int(m_levels.size()));
    flushIfLarge();
}

void JsonStreamWriter::finish()
{
    m_buffer += '\n';
    m_out << m_buffer;
    m_buffer.clear();
}

void JsonStreamWriter::open(char opening, char closing)
{
    separate();
    m_buffer += opening;
    m_levels.push_back({closing, true});
}

// A member's value follows its key directly; anything else inside a container
// starts on its own line, after a comma unless it is the first.
void JsonStreamWriter::separate()
{
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (m_levels.empty())
        return;
    if (!m_levels.back().empty)
        m_buffer += ',';
    m_levels.back().empty = false;
    newline();
}

void JsonStreamWriter::newline()
{
    m_buffer += '\n';
    m_buffer += QByteArray(qsizetype(m_levels.size()) * 2, ' ');
}

void JsonStreamWriter::flushIfLarge()
{
    constexpr qsizetype chunk = 64 * 1024;
    if (m_buffer.size() >= chunk) {
        m_out << m_buffer;
        m_buffer.clear();
    }
}

} // namespace sorvane::cli
