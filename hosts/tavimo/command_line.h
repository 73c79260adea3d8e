// From the words of the command line to options; help, and errors that name what was probably meant.
#pragma once

#include <optional>

#include "options.h"

namespace tavimo::host {

struct ParsedCommandLine {
  std::optional<Options> options;  // none: everything has been said, end with exitCode
  int exitCode = kDone;
};

[[nodiscard]] ParsedCommandLine ParseCommandLine(int argc, char** argv);

}  // namespace tavimo::host
