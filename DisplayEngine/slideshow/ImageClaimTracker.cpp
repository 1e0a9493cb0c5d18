#include "slideshow/ImageClaimTracker.h"

namespace sorvane {

qsizetype ImageClaimTracker::claimFirstFree(const std::function<std::optional<std::pair<qsizetype, QUrl>>()> &next)
{
    const std::lock_guard guard(m_lock);
    while (const std::optional<std::pair<qsizetype, QUrl>> candidate = next()) {
        if (!m_claimedImages.contains(candidate->second)) {
            m_claimedImages.insert(candidate->second);
            return candidate->first;
        }
    }
    return -1;
}

void ImageClaimTracker::claim(const QUrl &url)
{
    const std::lock_guard guard(m_lock);
    m_claimedImages.insert(url);
}

void ImageClaimTracker::release(const QUrl &url)
{
    const std::lock_guard guard(m_lock);
    m_claimedImages.remove(url);
}

bool ImageClaimTracker::isClaimed(const QUrl &url) const
{
    const std::lock_guard guard(m_lock);
    return m_claimedImages.contains(url);
}

qsizetype ImageClaimTracker::claimedCount() const
{
    const std::lock_guard guard(m_lock);
    return m_claimedImages.size();
}

void ImageClaimTracker::clear()
{
    const std::lock_guard guard(m_lock);
    m_claimedImages.clear();
}

} // namespace sorvane
