#pragma once

#include <QString>
#include <QStringView>
#include <QUrl>

#include <string>

namespace sorvane {

// The order a file browser lists paths in: case-insensitive, with runs of digits
// compared by their numeric value ("file2" before "file10"). Each path is turned once
// into a byte key that plain byte comparison orders correctly, so sorting many paths
// costs no locale work per comparison.
class NaturalPathOrder {
public:
    // Keys compare (with std::string's operator<) as their paths should be ordered.
    static std::string sortKey(QStringView path);
    // The same key, appended to `keys` (many keys in one buffer cost one allocation).
    static void appendSortKey(QStringView path, std::string &keys);
    // The path an item is ordered by: the local file path, else the URL's path.
    static QString pathOf(const QUrl &url);
};

} // namespace sorvane
