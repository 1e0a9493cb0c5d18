#pragma once

#include "bundle/BundleFlavor.h"

#include <QString>

namespace sorvane {

// The README.txt a bundle carries for people who open the folder by hand.
class BundleReadme {
public:
    static QString text(const QString &title, qint64 itemCount, const QString &createdUtc, BundleFlavor flavor);
};

} // namespace sorvane
