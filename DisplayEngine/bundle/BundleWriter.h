#pragma once

#include "bundle/BundleSizeEstimate.h"
#include "bundle/BundleWriteProgress.h"
#include "bundle/BundleWriteRequest.h"
#include "bundle/BundleWriteResult.h"

#include <QStringList>

#include <functional>

namespace sorvane {

// A source the scan accepted.
struct BundleSourceFile {
    QString path; // absolute
    qint64 bytes = 0;
    bool isVideo = false;
};

// What scanning the request's sources found, and what writing them would take.
struct BundleSourceScan {
    std::vector<BundleSourceFile> sources; // in export order
    BundleSizeEstimate estimate;
};

// Exports photos and videos into a new bundle folder. A write is one blocking
// call, meant for a background thread; it never throws. It stages everything in
// a hidden folder beside the destination and moves the result into place only at
// the end, so nothing ever appears half-written under the final name.
class BundleWriter {
public:
    using ProgressCallback = std::function<void(const BundleWriteProgress &)>;
    // Asked while hashing and while writing derivatives; true cancels the write.
    using CancelCheck = std::function<bool()>;

    static BundleWriteResult write(
        const BundleWriteRequest &request, const ProgressCallback &progress = {}, const CancelCheck &cancelled = {});

    // The sources a write of `request` would take, in order, with a size estimate.
    static BundleSourceScan scan(const BundleWriteRequest &request);
};

} // namespace sorvane
