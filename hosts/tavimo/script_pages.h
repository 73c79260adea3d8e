// The pages of a lesson's script as pictures, for the page of the lesson.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tavimo::host {

struct ScriptPage {
  std::filesystem::path png;  // gone afterwards
  // The text by the script's own lines, each as page_lines.h has it: not marked and marked by turns.
  std::vector<std::vector<std::string>> lines;
};

// Draws every page of the script with the learner's marks, as the last tavimo pages build set it up, or with the usual
// font and page where there was none. A Refusal when the script cannot be laid out.
void DrawScriptPages(const std::filesystem::path& home, const std::filesystem::path& script,
                     const std::function<void(const ScriptPage&)>& take);

}  // namespace tavimo::host
