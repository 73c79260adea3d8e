// The rule which programs of the family may run side by side: the recorder runs alone, the player and the reviewer may
// share the machine. A second copy of the same program is not looked for.
#pragma once

#include <cstdint>

namespace tavimo::hostutil {

// The message to show when a program may not start (GBK), or null when it may. program: 0 player, 1 recorder, any other
// value reviewer. titleExists tells whether a window of that title is there.
[[nodiscard]] const char* ReasonNotToRun(std::int32_t program, bool (*titleExists)(const char*)) noexcept;

}  // namespace tavimo::hostutil
