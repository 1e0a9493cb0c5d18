#pragma once

namespace sorvane {

// Direction in which Flow strips run.
enum class FlowOrientation { vertical, horizontal };

} // namespace sorvane
