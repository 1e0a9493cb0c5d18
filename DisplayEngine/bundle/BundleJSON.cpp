#include "bundle/BundleJSON.h"

#include <charconv>
#include <cmath>

namespace sorvane {

void BundleJSON::insert(const QString &key, BundleJSON value)
{
    if (auto *object = std::get_if<Object>(&m_value))
        object->emplace_back(key, std::move(value));
}

void BundleJSON::append(BundleJSON value)
{
    if (auto *array = std::get_if<Array>(&m_value))
        array->push_back(std::move(value));
}

const BundleJSON *BundleJSON::find(const QString &key) const
{
    if (const auto *object = asObject()) {
        for (const auto &[name, value] : *object) {
            if (name == key)
                return &value;
        }
    }
    return nullptr;
}

QByteArray BundleJSON::serialize(bool pretty) const
{
    QByteArray out;
    write(out, pretty, 0);
    if (pretty)
        out += '\n';
    return out;
}

namespace {

void writeString(QByteArray &out, const QString &text)
{
    static const char hex[] = "0123456789abcdef";
    out += '"';
    for (const char c : text.toUtf8()) {
        const auto u = static_cast<unsigned char>(c);
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\b':
            out += "\\b";
            break;
        case '\f':
            out += "\\f";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (u < 0x20) {
                out += "\\u00";
                out += hex[u >> 4];
                out += hex[u & 0xF];
            } else {
                out += c;
            }
        }
    }
    out += '"';
}

void writeDouble(QByteArray &out, double number)
{
    // JSON has no NaN or infinity; such a value can only come from a bug upstream.
    if (!std::isfinite(number)) {
        out += '0';
        return;
    }
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, number);
    QByteArrayView text(buffer, result.ptr - buffer);
    out += text;
    // Keep a double recognisable as one when read back ("2.0", not "2").
    if (!text.contains('.') && !text.contains('e') && !text.contains('E'))
        out += ".0";
}

void newline(QByteArray &out, bool pretty, int depth)
{
    if (!pretty)
        return;
    out += '\n';
    out += QByteArray(depth * 2, ' ');
}

} // namespace

void BundleJSON::write(QByteArray &out, bool pretty, int depth) const
{
    if (const auto *object = asObject()) {
        if (object->empty()) {
            out += "{}";
            return;
        }
        out += '{';
        bool first = true;
        for (const auto &[key, value] : *object) {
            if (!first)
                out += ',';
            first = false;
            newline(out, pretty, depth + 1);
            writeString(out, key);
            out += pretty ? ": " : ":";
            value.write(out, pretty, depth + 1);
        }
        newline(out, pretty, depth);
        out += '}';
    } else if (const auto *array = asArray()) {
        if (array->empty()) {
            out += "[]";
            return;
        }
        out += '[';
        bool first = true;
        for (const auto &value : *array) {
            if (!first)
                out += ',';
            first = false;
            newline(out, pretty, depth + 1);
            value.write(out, pretty, depth + 1);
        }
        newline(out, pretty, depth);
        out += ']';
    } else if (const auto *text = asString()) {
        writeString(out, *text);
    } else if (const auto *integer = asInt()) {
        out += QByteArray::number(*integer);
    } else if (const auto *number = asDouble()) {
        writeDouble(out, *number);
    } else if (const auto *flag = asBool()) {
        out += *flag ? "true" : "false";
    }
}

} // namespace sorvane
