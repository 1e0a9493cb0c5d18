#pragma once

#include <QByteArray>
#include <QJsonParseError>
#include <QLatin1StringView>
#include <QString>

#include <span>
#include <vector>

namespace sorvane {

// One pass over JSON text that builds nothing. It checks the text with the grammar and
// limits of Qt's parser, so that whatever passes here also parses there, and outlines the
// top-level object: where the members with the names asked for lie (the last of a repeated
// name, as Qt keeps it), how many other members there are, and where each entry of one
// array member lies. Each span also counts the JSON values inside it, which is what a
// parsed document costs. Memory is proportional to the outline, never to the text.
class JsonOutline {
public:
    struct Span {
        qsizetype begin = 0;
        qsizetype end = 0;
        // Values from begin to end, the value itself included.
        qsizetype values = 0;
    };
    struct Member {
        QLatin1StringView name;
        // From the opening quote of the name to the end of the value.
        Span span;
    };

    // `names` and `listName` must outlive the outline; at most `maxEntries` entries are
    // kept, the rest only counted.
    static JsonOutline of(const QByteArray &text, std::span<const QLatin1StringView> names, QLatin1StringView listName,
        qsizetype maxEntries);

    // NoError when the text is valid JSON.
    QJsonParseError error {0, QJsonParseError::NoError};
    bool isObject = false;
    std::vector<Member> members;
    qsizetype otherMembers = 0;
    // The list member, when present: its whole span, whether it holds an array, its entries.
    bool hasList = false;
    Span list;
    bool listIsArray = false;
    std::vector<Span> entries;
    qsizetype entryCount = 0;
};

} // namespace sorvane
