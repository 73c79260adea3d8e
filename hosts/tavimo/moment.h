// Names that tell the moment something was kept: "2026-11-23_19-05-30", and "…-2" for a second thing of that moment.
#pragma once

#include <filesystem>
#include <string>

namespace tavimo::host {

// The name of a moment, in the person's own time.
[[nodiscard]] std::string MomentName(std::filesystem::file_time_type time);

// A path in the folder that nothing has yet. The extension starts with a point, or is empty.
[[nodiscard]] std::filesystem::path UnusedDatedName(const std::filesystem::path& folder,
                                                    std::filesystem::file_time_type time, const char* extension);

// By the moment, and "…-10" behind "…-9".
[[nodiscard]] bool IsOlderName(const std::filesystem::path& left, const std::filesystem::path& right);

// "2026-11-23 19:05:30", as far as the name tells.
[[nodiscard]] std::string MomentOf(const std::filesystem::path& path);

[[nodiscard]] std::string MomentOf(std::filesystem::file_time_type time);

}  // namespace tavimo::host
