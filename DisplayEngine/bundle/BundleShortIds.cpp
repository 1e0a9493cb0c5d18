#include "bundle/BundleShortIds.h"

#include <QHash>

namespace sorvane {

BundleShortIds BundleShortIds::assign(const std::vector<QString> &digests)
{
    QHash<QString, int> uses;
    for (const QString &digest : digests)
        ++uses[digest.left(16)];
    BundleShortIds result;
    QHash<QString, bool> listed;
    for (const QString &digest : digests) {
        const QString shortId = digest.left(16);
        const int count = uses.value(shortId);
        result.ids.push_back(count > 1 ? digest.left(32) : shortId);
        if (count > 1 && !listed.value(shortId)) {
            listed.insert(shortId, true);
            result.extended.emplace_back(shortId, count);
        }
    }
    return result;
}

} // namespace sorvane
