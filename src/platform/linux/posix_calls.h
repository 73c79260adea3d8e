// What the sources of the file layer share when they call the system. Not for anybody else.
#pragma once

#include <sys/stat.h>

#include <cerrno>
#include <cstdint>

namespace tavimo::platform {

// Makes a call again for as long as a signal cuts it short.
template <typename Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

// The file layer's headers keep a descriptor in a handle that is wide enough for every back end.
inline int DescriptorOf(std::intptr_t handle) { return static_cast<int>(handle); }

// A file without any write bit is read-only for everybody, also for a process whose rights would let it write.
inline bool IsReadOnly(const struct stat& status) { return (status.st_mode & 0222) == 0; }

}  // namespace tavimo::platform
