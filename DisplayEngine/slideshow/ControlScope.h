#pragma once

namespace sorvane {

// How slideshows on several displays are steered.
enum class ControlScope { independent, linked, mirrored };

} // namespace sorvane
