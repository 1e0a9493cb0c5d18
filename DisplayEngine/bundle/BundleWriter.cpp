#include "bundle/BundleWriter.h"

namespace sorvane {

// In progress: the pipeline is being written.
BundleWriteResult BundleWriter::write(const BundleWriteRequest &, const ProgressCallback &, const CancelCheck &)
{
    BundleWriteResult result;
    result.errorCode = BundleWriteErrorCode::writeFailed;
    result.errorMessage = QStringLiteral("not yet");
    return result;
}

BundleSourceScan BundleWriter::scan(const BundleWriteRequest &)
{
    return {};
}

} // namespace sorvane
