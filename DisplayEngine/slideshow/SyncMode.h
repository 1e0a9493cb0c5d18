#pragma once

namespace sorvane {

// How linked slideshows time their advances.
enum class SyncMode { synchronized, phased };

} // namespace sorvane
