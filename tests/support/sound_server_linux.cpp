#include "support/sound_server.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>

namespace tavimo::tests {

namespace fs = std::filesystem;

namespace {

// Without "norewinds" the sink renders two seconds at a time, and a recorder waits as long for its first byte.
std::string Script(const fs::path& socket) {
  std::ostringstream script;
  script << ".fail\n"
         << "load-module module-native-protocol-unix auth-anonymous=1 socket=" << socket.string() << '\n'
         << "load-module module-null-sink sink_name=" << SoundServer::kSink << " rate=48000 channels=2 norewinds=1\n"
         << "load-module module-remap-source master=" << SoundServer::kSink
         << ".monitor source_name=" << SoundServer::kMicrophone << " source_properties=\"device.description='"
         << SoundServer::kMicrophoneDescription << "'\"\n"
         << "set-default-sink " << SoundServer::kSink << '\n'
         << "set-default-source " << SoundServer::kMicrophone << '\n';
  return script.str();
}

// Does not return. Nothing here asks for memory: the process may have other threads.
[[noreturn]] void RunServer(const char* script, const char* log) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);  // a test that crashes leaves no server behind
  const int output = open(log, O_WRONLY | O_CREAT | O_APPEND, 0600);
  dup2(output, STDOUT_FILENO);
  dup2(output, STDERR_FILENO);
  execlp("pulseaudio", "pulseaudio", "-n", "-F", script, "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
         "--disable-shm=yes", static_cast<char*>(nullptr));
  _exit(127);
}

}  // namespace

bool SoundServer::IsInstalled() {
  std::istringstream path(std::getenv("PATH") ? std::getenv("PATH") : "");
  for (std::string folder; std::getline(path, folder, ':');) {
    if (access((folder + "/pulseaudio").c_str(), X_OK) == 0) return true;
  }
  return false;
}

SoundServer::SoundServer() {
  std::ofstream(folder_ / "script") << Script(folder_ / "socket");
  Start();
}

SoundServer::~SoundServer() {
  Kill();
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

bool SoundServer::Start() {
  const std::string script = folder_ / "script";
  const std::string log = folder_ / "log";
  fs::remove(folder_ / "socket");
  process_ = fork();
  if (process_ == 0) RunServer(script.c_str(), log.c_str());
  if (AnswersWithin(5000)) return true;
  Kill();
  return false;
}

void SoundServer::Kill() {
  if (process_ <= 0) return;
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  process_ = -1;
}

void SoundServer::Freeze() const { kill(process_, SIGSTOP); }
void SoundServer::Thaw() const { kill(process_, SIGCONT); }

std::string SoundServer::Log() const {
  std::ifstream log(folder_ / "log");
  return {std::istreambuf_iterator<char>(log), {}};
}

bool SoundServer::AnswersWithin(int timeoutMs) const {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, (folder_ / "socket").c_str(), sizeof address.sun_path - 1);
  while (process_ > 0 && std::chrono::steady_clock::now() < end) {
    const int client = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool isAnswered = connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(client);
    if (isAnswered) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

}  // namespace tavimo::tests
