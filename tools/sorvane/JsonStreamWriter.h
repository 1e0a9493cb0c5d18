#pragma once

#include "bundle/BundleJSON.h"

#include <QByteArray>
#include <QTextStream>
#include <vector>

namespace sorvane::cli {

// Writes one pretty JSON document to a stream piece by piece, formatted exactly
// as BundleJSON::serialize() formats the whole, so that a result with hundreds of
// thousands of entries never has to exist as one tree or one buffer.
class JsonStreamWriter {
public:
    explicit JsonStreamWriter(QTextStream &out) : m_out(out) { }

    void beginObject() { open('{', '}'); }
    void beginArray() { open('[', ']'); }
    void end();
    // Names the member whose value comes next.
    void key(const QString &name);
    void value(const BundleJSON &value);
    // Ends the document with its newline and hands everything to the stream.
    void finish();

private:
    struct Level {
        char close;
        bool empty;
    };
    void open(char opening, char closing);
    void separate();
    void newline();
    void flushIfLarge();

    QTextStream &m_out;
    QByteArray m_buffer;
    std::vector<Level> m_levels;
    bool m_afterKey = false;
};

} // namespace sorvane::cli
