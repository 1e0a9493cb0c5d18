#pragma once

#include "bundle/BundleOpenOptions.h"
#include "bundle/BundleOpenResult.h"

#include <QString>

namespace sorvane {

// Opens and validates a bundle folder. Never throws: one fatal BundleError or
// an OpenedBundle, plus reports. Blocking: it reads the manifest and checks
// every file to the depth asked for (hashing and decoding use several threads).
class BundleReader {
public:
    // `root` is the bundle folder or its bundle.json.
    static BundleOpenResult open(const QString &root, const BundleOpenOptions &options = {});
};

} // namespace sorvane
