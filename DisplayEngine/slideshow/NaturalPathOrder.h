#pragma once

#include <QString>
#include <QStringView>
#include <QUrl>

namespace sorvane {

// The order a file browser lists paths in: case-insensitive, with runs of digits
// compared by their numeric value ("file2" before "file10"). Each path is turned once
// into a key that plain code-unit comparison orders correctly, so sorting many paths
// costs no locale work per comparison.
class NaturalPathOrder {
public:
    // Keys compare (with QString's operator<) as their paths should be ordered.
    static QString sortKey(QStringView path);
    // The path an item is ordered by: the local file path, else the URL's path.
    static QString pathOf(const QUrl &url);
};

} // namespace sorvane
