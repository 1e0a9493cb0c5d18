#pragma once

#include <QString>

#include <utility>
#include <vector>

namespace sorvane {

// Item ids from content digests: the first 16 hex digits, or the first 32 for
// every item of a group whose 16 digits agree.
struct BundleShortIds {
    std::vector<QString> ids;
    // One entry per group that was extended: the shared 16-digit id and how many items had it,
    // in the order the groups first appear.
    std::vector<std::pair<QString, int>> extended;

    static BundleShortIds assign(const std::vector<QString> &digests);
};

} // namespace sorvane
