#pragma once

namespace sorvane {

// How Flow tiles share a strip's length.
enum class FlowWeightMode { proportional, weighted };

} // namespace sorvane
