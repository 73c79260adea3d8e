// From the words of the command line (without the program's name, in UTF-8) to options; help, and errors that name what was probably meant.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "options.h"

namespace tavimo::host {

struct ParsedCommandLine {
  std::optional<Options> options;  // none: everything has been said, end with exitCode
  int exitCode = kDone;
};

[[nodiscard]] ParsedCommandLine ParseCommandLine(std::vector<std::string> words);

}  // namespace tavimo::host
