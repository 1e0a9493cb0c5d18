#include "media/MediaFolderScan.h"

#include "bundle/MediaTreeWalk.h"
#include "media/AnimationHeader.h"
#include "media/VideoExtensions.h"

#include <QDir>

#include <algorithm>
#include <cerrno>

#include <sys/resource.h>
#include <unistd.h>

namespace sorvane {

namespace {

// How much lower than the show the rest of a scan runs.
constexpr int kBackgroundNice = 10;

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

// Lowers this thread's scheduling priority (Linux: a thread's nice value is its own).
void yieldToTheShow()
{
    const auto self = static_cast<id_t>(gettid());
    errno = 0;
    const int nice = getpriority(PRIO_PROCESS, self);
    if (errno == 0)
        setpriority(PRIO_PROCESS, self, std::min(nice + kBackgroundNice, 19));
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

    bool delivered = false;
    const auto deliver = [this, cancelled, &delivered](QList<ImageItem> items) {
        // The rest of a large folder is background work: once the first item is out, the
        // show that starts with it (decoding, drawing) goes first on a busy machine.
        if (!std::exchange(delivered, true))
            yieldToTheShow();
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
