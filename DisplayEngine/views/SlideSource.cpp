#include "views/SlideSource.h"

#include "bundle/BundleWireValues.h"
#include "views/AnimationBudget.h"
#include "views/SlideImageProvider.h"
#include "views/ViewsLog.h"

#include <QQuickWindow>
#include <QSGRendererInterface>

namespace sorvane {

SlideSource::SlideSource(QObject *parent)
    : QObject(parent), m_filtersOnGpu(QSGRendererInterface::isApiRhiBased(QQuickWindow::graphicsApi()))
{
}

QString SlideSource::imageUrl(const QUrl &fileUrl, const QString &scalingRaw, const QString &filterRaw) const
{
    // No slide at all (a wall is up instead) is not worth a warning.
    if (fileUrl.isEmpty())
        return {};
    const std::optional<ImageScalingMode> scaling = fromWire<ImageScalingMode>(scalingRaw);
    const std::optional<ImageFilter> filter = fromWire<ImageFilter>(filterRaw);
    if (!fileUrl.isLocalFile() || !scaling || !filter) {
        qCWarning(lcViews) << "no slide image for" << fileUrl << scalingRaw << filterRaw;
        return {};
    }
    return QStringLiteral("image://") + SlideImageProvider::kProviderName + u'/'
        + SlideImageProvider::imageId(fileUrl.toLocalFile(), *scaling, m_filtersOnGpu ? ImageFilter::none : *filter);
}

QString SlideSource::animationRefusal(const QUrl &fileUrl) const
{
    return fileUrl.isLocalFile() ? AnimationBudget::refusal(fileUrl.toLocalFile()) : QString();
}

} // namespace sorvane
