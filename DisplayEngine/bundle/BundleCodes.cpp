#include "bundle/BundleError.h"
#include "bundle/BundleReport.h"

namespace sorvane {

// Codes are written and logged under their case names.
QString toString(BundleErrorCode code)
{
    switch (code) {
    case BundleErrorCode::notABundle:
        return QStringLiteral("notABundle");
    case BundleErrorCode::manifestUnreadable:
        return QStringLiteral("manifestUnreadable");
    case BundleErrorCode::manifestMalformed:
        return QStringLiteral("manifestMalformed");
    case BundleErrorCode::unsupportedFutureVersion:
        return QStringLiteral("unsupportedFutureVersion");
    case BundleErrorCode::incompleteBundle:
        return QStringLiteral("incompleteBundle");
    case BundleErrorCode::noPlayableMedia:
        return QStringLiteral("noPlayableMedia");
    }
    return {};
}

QString toString(BundleReportCode code)
{
    switch (code) {
    case BundleReportCode::itemAssetMissing:
        return QStringLiteral("itemAssetMissing");
    case BundleReportCode::itemAssetSizeMismatch:
        return QStringLiteral("itemAssetSizeMismatch");
    case BundleReportCode::itemAssetUndecodable:
        return QStringLiteral("itemAssetUndecodable");
    case BundleReportCode::unsupportedMediaSkipped:
        return QStringLiteral("unsupportedMediaSkipped");
    case BundleReportCode::unknownEnumValueDefaulted:
        return QStringLiteral("unknownEnumValueDefaulted");
    case BundleReportCode::originalsMissing:
        return QStringLiteral("originalsMissing");
    case BundleReportCode::unknownFieldsIgnored:
        return QStringLiteral("unknownFieldsIgnored");
    case BundleReportCode::brandingLogoAssetMissing:
        return QStringLiteral("brandingLogoAssetMissing");
    }
    return {};
}

} // namespace sorvane
