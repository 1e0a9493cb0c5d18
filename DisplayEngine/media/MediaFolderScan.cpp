#include "media/MediaFolderScan.h"

#include "bundle/MediaTreeWalk.h"
#include "media/AnimationHeader.h"
#include "media/VideoExtensions.h"

#include <QDir>

namespace sorvane {

namespace {

ImageItem itemFor(const QFileInfo &file, bool isVideo, const QString &root, qint64 index)
{
    const QString path = file.absoluteFilePath();
    const QString relative = QDir(root).relativeFilePath(path);
    const QString suffix = file.suffix().toLower();
    if (isVideo) {
        return ImageItem(QUrl::fromLocalFile(path), relative, index, false, AnimationType::none, std::nullopt,
            std::nullopt, MediaType::video, VideoExtensions::tierFor(suffix));
    }
    // Only the two formats that may move are opened, for their first few bytes.
    const bool mayMove = suffix == QLatin1String("gif") || suffix == QLatin1String("webp");
    const AnimationType animation = mayMove ? AnimationHeader::typeOfFile(path) : AnimationType::none;
    return ImageItem(QUrl::fromLocalFile(path), relative, index, animation != AnimationType::none, animation);
}

} // namespace

MediaFolderScan::MediaFolderScan(QObject *parent) : QObject(parent) { }

MediaFolderScan::~MediaFolderScan()
{
    cancel();
    join();
}

bool MediaFolderScan::start(const Request &request)
{
    if (m_running)
        return false;
    join();
    m_running = true;
    m_cancel = std::make_shared<std::atomic<bool>>(false);
    m_thread = std::thread([this, request] { run(request); });
    return true;
}

void MediaFolderScan::cancel()
{
    if (m_cancel)
        m_cancel->store(true);
}

void MediaFolderScan::join()
{
    if (m_thread.joinable())
        m_thread.join();
}

// Runs on the worker thread. Results are handed to the object's thread as posted calls, which
// keep their order; a call that arrives after a cancel drops its batch.
void MediaFolderScan::run(const Request &request)
{
    const std::shared_ptr<std::atomic<bool>> cancelled = m_cancel;
    MediaFolderScanCounts counts;
    QList<ImageItem> batch;
    qsizetype batchSize = 1;
    qint64 index = 0;

    const auto deliver = [this, cancelled](QList<ImageItem> items) {
        QMetaObject::invokeMethod(
            this,
            [this, cancelled, items = std::move(items)] {
                if (!cancelled->load())
                    Q_EMIT batchFound(items);
            },
            Qt::QueuedConnection);
    };

    MediaTreeWalk walk(request.includeVideos, [&](const QFileInfo &file, bool isVideo, const QString &root) {
        if (cancelled->load())
            return false;
        if (!file.isFile() || !file.isReadable()) {
            ++counts.unreadableFiles;
            return true;
        }
        batch.append(itemFor(file, isVideo, root, index++));
        ++(isVideo ? counts.videos : counts.images);
        if (batch.size() >= batchSize) {
            deliver(std::exchange(batch, {}));
            batchSize = std::min<qsizetype>(batchSize * 2, kMaxBatch);
        }
        return true;
    });
    walk.stayInsidePickedFolders(true);
    walk.stopWhen([&cancelled] { return cancelled->load(); });
    for (const QString &file : request.files)
        walk.addPickedFile(QFileInfo(file));
    for (const QString &folder : request.folders)
        walk.addFolder(folder);
    if (!batch.isEmpty())
        deliver(std::move(batch));
    counts.unreadableFolders = walk.unreadableFolders();

    QMetaObject::invokeMethod(
        this,
        [this, cancelled, counts]() mutable {
            counts.cancelled = cancelled->load();
            m_running = false;
            join();
            Q_EMIT finished(counts);
        },
        Qt::QueuedConnection);
}

} // namespace sorvane
