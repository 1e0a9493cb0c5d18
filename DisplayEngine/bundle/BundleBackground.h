#pragma once

namespace sorvane {

// Background colour a bundle asks for behind its slides.
enum class BundleBackground { black, darkGray };

} // namespace sorvane
