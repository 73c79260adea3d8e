// One thing: the engine's name for a file that a host names in the system's way. Each platform has its own rules for it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavimo::platform {

// A native path (UTF-8) in GBK with backslashes, an absolute one with the letter of its drive. Nothing for an empty path,
// one that is not UTF-8, and one that no engine path can spell.
[[nodiscard]] std::optional<std::string> EnginePath(std::string_view nativePath) noexcept;

}  // namespace tavimo::platform
