// The pages of a lesson's script as pictures, for the page of the lesson.
#pragma once

#include <filesystem>
#include <functional>

namespace tavimo::host {

// Draws every page of the script with the learner's marks, as the last tavimo pages build set it up, or with the usual
// font and page where there was none. Each is handed on as a PNG file that is gone afterwards. A Refusal when the script
// cannot be laid out.
void DrawScriptPages(const std::filesystem::path& home, const std::filesystem::path& script,
                     const std::function<void(const std::filesystem::path&)>& take);

}  // namespace tavimo::host
