// `tavimo call`: any export of the engine, or several after one another, from the shell. For who writes a host and wants to
// see what an export does; the folders temp, tmpwav and zud are made in the current directory.
#include <chrono>
#include <iostream>
#include <optional>
#include <utility>

#include "engine_call.h"
#include "options.h"
#include "refusal.h"
#include "text.h"

namespace tavimo::host {

namespace {

constexpr const char* kNextCall = "+";
constexpr const char* kWait = "wait";

// Messages that the engine has posted, for as long as a host would be busy with them.
void DispatchFor(const std::vector<std::string>& words) {
  const auto seconds = words.size() == 1 ? ParseTime(words.front()) : std::nullopt;
  if (!seconds) throw Refusal("the call is wait SECONDS");
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(*seconds);
  do {
    tvDispatchMessages(10);
  } while (std::chrono::steady_clock::now() < end);
}

void Call(const std::vector<std::string>& call, CallObjects& objects) {
  const std::vector<std::string> words(call.begin() + 1, call.end());
  if (call.front() == kWait) {
    DispatchFor(words);
    return;
  }
  std::cout << CallEngine(call.front(), words, objects);
  tvDispatchMessages(0);
}

}  // namespace

int RunCall(const Options& options) {
  if (options.calls.empty()) {
    for (const std::string& name : ExportNames()) std::cout << DescribeExport(name) << '\n';
    return kDone;
  }
  for (const char* folder : {"temp", "tmpwav", "zud"}) std::filesystem::create_directories(folder);
  CallObjects objects;
  std::vector<std::string> call;
  for (const std::string& word : options.calls) {
    if (word != kNextCall) {
      call.push_back(word);
    } else if (!call.empty()) {
      Call(std::exchange(call, {}), objects);
    }
  }
  if (!call.empty()) Call(call, objects);
  std::cout << objects.Describe();
  return kDone;
}

}  // namespace tavimo::host
