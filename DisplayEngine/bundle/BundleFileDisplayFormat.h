#pragma once

namespace sorvane {

// How a bundle asks for the file-name caption to be written.
enum class BundleFileDisplayFormat { filenameOnly, relativePath, absolutePath, parentPlusFilename };

} // namespace sorvane
