#pragma once

#include <QString>

namespace sorvane {

// True when `path` is a usable bundle-relative path: not blank, not absolute
// ("/" or "\"), no ":" and no ".." component. Empty components are allowed.
bool isSafeBundleRelativePath(const QString &path);

} // namespace sorvane
