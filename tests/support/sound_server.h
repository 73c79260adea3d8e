// A sound server of a test's own, without hardware: what is played into its sink is heard by its microphone. While it
// lives, the environment of the process leads every client to it.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

#include "support/system.h"

namespace tavimo::tests {

class SoundServer {
 public:
  static constexpr const char* kSink = "test_sink";
  static constexpr const char* kMicrophone = "test_microphone";
  static constexpr const char* kMicrophoneDescription = "Test microphone";

  // Whether there is a server program to start; a test without one skips with kMissing as its reason.
  static bool IsInstalled();
  static constexpr const char* kMissing = "no sound server here: the program pulseaudio is not installed";

  SoundServer();  // starts
  SoundServer(const SoundServer&) = delete;
  SoundServer& operator=(const SoundServer&) = delete;
  ~SoundServer();

  // False when the server did not come up; its words are in Log.
  bool Start();
  void Kill();

  // A frozen server takes connections and answers none.
  void Freeze() const;
  void Thaw() const;

  [[nodiscard]] bool IsRunning() const { return process_ > 0; }
  [[nodiscard]] std::string Log() const;

 private:
  [[nodiscard]] bool AnswersWithin(int timeoutMs) const;

  std::filesystem::path folder_ = MakeFolderOfItsOwn();
  ScopedVariable home_{"HOME", folder_.c_str()};
  ScopedVariable runtime_{"XDG_RUNTIME_DIR", folder_.c_str()};
  ScopedVariable cookie_{"PULSE_COOKIE", (folder_ / "cookie").c_str()};
  ScopedVariable address_{"PULSE_SERVER", ("unix:" + (folder_ / "socket").string()).c_str()};
  pid_t process_ = -1;
};

}  // namespace tavimo::tests
