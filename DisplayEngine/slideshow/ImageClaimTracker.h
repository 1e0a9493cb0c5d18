#pragma once

#include <QSet>
#include <QUrl>

#include <functional>
#include <mutex>
#include <optional>
#include <utility>

namespace sorvane {

// The files that linked slideshow windows are showing, so that no two windows show
// the same file at once. Claims are by file URL, not by item id: two items for one
// file count as one. Every read or change holds the lock.
class ImageClaimTracker {
public:
    // Under the lock: the first candidate, in the order `next` yields them, whose URL
    // is not claimed; it is claimed before the lock is released. `next` gives nothing
    // when the candidates run out. Returns the index `next` gave with that URL, or -1.
    qsizetype claimFirstFree(const std::function<std::optional<std::pair<qsizetype, QUrl>>()> &next);
    // Claims `url` whether or not another window holds it (the first slide of a window).
    void claim(const QUrl &url);
    void release(const QUrl &url);
    bool isClaimed(const QUrl &url) const;
    qsizetype claimedCount() const;
    void clear();

private:
    mutable std::mutex m_lock;
    QSet<QUrl> m_claimedImages;
};

} // namespace sorvane
