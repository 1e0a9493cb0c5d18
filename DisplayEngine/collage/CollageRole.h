#pragma once

namespace sorvane {

// How a wall relates to the other walls of a mirrored show.
enum class CollageRole {
    independent, // runs on its own
    mirrorLeader, // runs and broadcasts each of its changes
    mirrorFollower, // runs no timers of its own and copies the leader's broadcasts
};

} // namespace sorvane
