#pragma once

#include <QString>

namespace sorvane {

enum class BundleFlavor { mediaOnly, withPlayer };

inline QString toWire(BundleFlavor flavor)
{
    return flavor == BundleFlavor::withPlayer ? QStringLiteral("with-player") : QStringLiteral("media-only");
}

// Only the exact text "with-player" selects the with-player flavor.
inline BundleFlavor bundleFlavorFromWire(const QString &text)
{
    return text == QLatin1String("with-player") ? BundleFlavor::withPlayer : BundleFlavor::mediaOnly;
}

} // namespace sorvane
