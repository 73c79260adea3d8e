// A lesson's script as the engine reads it: GBK, with CR LF behind every line.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "page_setup.h"
#include "script_text.h"

namespace tavimo::host {

struct EngineText {
  std::string gbk;
  Encoding encoding = Encoding::Utf8;
  std::size_t lineCount = 0;
  std::size_t mendedLineEnds = 0;  // that were LF or CR alone, which the engine does not take for line ends
  std::string lost;                // a line for each character that became a question mark; empty where none did
};

// A Refusal when the script cannot be read, is empty or has zero bytes, at which the engine would stop. Characters that
// GBK lacks are told on standard error and refused unless they may be replaced.
[[nodiscard]] EngineText ReadEngineText(const std::filesystem::path& script, const PageSetup& setup);

}  // namespace tavimo::host
