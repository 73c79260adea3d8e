// `tavimo devices`: the microphones and loudspeakers of this machine, by the names that --device takes.
#include <iostream>
#include <sstream>

#include "options.h"
#include "tavimo_host.h"
#include "text.h"

namespace tavimo::host {

namespace {

constexpr int kNamesRoom = 64 * 1024;

// False when no sound system answers.
bool PrintDevices(const char* kind, int isInput) {
  std::string names(kNamesRoom, '\0');
  const int written = tvListDevices(isInput, names.data(), kNamesRoom);
  std::istringstream lines(names.substr(0, written > 0 ? static_cast<std::size_t>(written) - 1 : 0));
  bool isAny = false;
  for (std::string name; std::getline(lines, name); isAny = true) {
    std::cout << kind << ReadableText(name) << '\n';
  }
  return isAny;
}

}  // namespace

int RunDevices(const Options& /*options*/) {
  const bool hasInputs = PrintDevices("input   ", 1);
  if (hasInputs && PrintDevices("output  ", 0)) return kDone;
  std::cerr << "tavimo: no sound system answers on this machine; recordings can still be made from a wave file, with "
               "--device file:PATH\n";
  return kRefused;
}

}  // namespace tavimo::host
