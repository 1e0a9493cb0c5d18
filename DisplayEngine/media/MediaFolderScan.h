#pragma once

#include "media/ImageItem.h"
#include "media/MediaFolderScanCounts.h"

#include <QList>
#include <QObject>
#include <QStringList>

#include <atomic>
#include <memory>
#include <thread>

namespace sorvane {

// Finds the photos and videos in folders and files the user picked, on a worker thread, by
// the export's rules: recursive in name order, hidden folders, bundles and folders already
// visited (link loops) skipped, supported extensions only. Unlike the export, it does not
// follow a link out of a picked folder: the folder may come from a stranger's stick. A file is judged by its name; only
// GIF and WebP files are opened, for the few header bytes that say whether they move. Items
// arrive in batches on the object's thread: the first as soon as one item is found, so a
// slideshow can start before a huge folder is done, then batches that grow, so the receiver
// is not flooded with signals. After the first batch the worker thread runs at a lower
// priority, so the show it feeds comes first on a busy machine.
class MediaFolderScan : public QObject {
    Q_OBJECT
public:
    struct Request {
        QStringList folders;
        // Files picked one by one (a folder among them is scanned like the others).
        QStringList files;
        bool includeVideos = true;
    };

    // The largest batch; batches double from one item up to it.
    static constexpr int kMaxBatch = 4096;

    explicit MediaFolderScan(QObject *parent = nullptr);
    // Cancels a running scan and waits for its thread.
    ~MediaFolderScan() override;

    // Starts a scan; false when one is already running. Items are numbered in the order found
    // (`originalIndex`), relative paths are relative to the picked folder (a picked file's is
    // its name).
    bool start(const Request &request);
    // Stops the running scan soon; `finished` still comes, with `cancelled` set.
    void cancel();
    bool isRunning() const { return m_running; }

Q_SIGNALS:
    void batchFound(const QList<sorvane::ImageItem> &items);
    void finished(const sorvane::MediaFolderScanCounts &counts);

private:
    void run(const Request &request);
    void join();

    std::thread m_thread;
    std::shared_ptr<std::atomic<bool>> m_cancel;
    bool m_running = false;
};

} // namespace sorvane
