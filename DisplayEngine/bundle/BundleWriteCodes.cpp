#include "bundle/BundleWriteErrorCode.h"
#include "bundle/BundleWritePhase.h"
#include "bundle/BundleWriteReport.h"

namespace sorvane {

// Raw values equal the case names.
QString toString(BundleWritePhase phase)
{
    switch (phase) {
    case BundleWritePhase::scanning:
        return QStringLiteral("scanning");
    case BundleWritePhase::hashing:
        return QStringLiteral("hashing");
    case BundleWritePhase::writingDerivatives:
        return QStringLiteral("writingDerivatives");
    case BundleWritePhase::copyingOriginals:
        return QStringLiteral("copyingOriginals");
    case BundleWritePhase::copyingPlayer:
        return QStringLiteral("copyingPlayer");
    case BundleWritePhase::writingManifest:
        return QStringLiteral("writingManifest");
    case BundleWritePhase::finalizing:
        return QStringLiteral("finalizing");
    }
    return {};
}

QString toString(BundleWriteErrorCode code)
{
    switch (code) {
    case BundleWriteErrorCode::noSourceMedia:
        return QStringLiteral("noSourceMedia");
    case BundleWriteErrorCode::destinationUnwritable:
        return QStringLiteral("destinationUnwritable");
    case BundleWriteErrorCode::playerPayloadMissing:
        return QStringLiteral("playerPayloadMissing");
    case BundleWriteErrorCode::playerTooOldForBundle:
        return QStringLiteral("playerTooOldForBundle");
    case BundleWriteErrorCode::writeFailed:
        return QStringLiteral("writeFailed");
    case BundleWriteErrorCode::cancelled:
        return QStringLiteral("cancelled");
    }
    return {};
}

QString toString(BundleWriteReportCode code)
{
    switch (code) {
    case BundleWriteReportCode::sourceUndecodable:
        return QStringLiteral("sourceUndecodable");
    case BundleWriteReportCode::videoPosterUnavailable:
        return QStringLiteral("videoPosterUnavailable");
    case BundleWriteReportCode::videoPosterFallbackUsed:
        return QStringLiteral("videoPosterFallbackUsed");
    case BundleWriteReportCode::animatedAssetOmitted:
        return QStringLiteral("animatedAssetOmitted");
    case BundleWriteReportCode::duplicateSourceMerged:
        return QStringLiteral("duplicateSourceMerged");
    case BundleWriteReportCode::hashCollisionExtended:
        return QStringLiteral("hashCollisionExtended");
    }
    return {};
}

} // namespace sorvane
