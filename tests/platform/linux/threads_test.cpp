// The engine's thread beside a host that handles signals.
#include "platform/threads.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>

namespace tavimo::platform {
namespace {

std::atomic<int> blockedInThread{-1};

TEST(Threads, AHostsSignalsAreKeptAwayFromTheThreadAlone) {
  ASSERT_TRUE(StartThread([]() noexcept {
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    blockedInThread = sigismember(&blocked, SIGINT);
    blockedInThread.notify_one();
  }));
  blockedInThread.wait(-1);
  EXPECT_EQ(blockedInThread, 1);
  sigset_t blocked;
  pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
  EXPECT_EQ(sigismember(&blocked, SIGINT), 0);
}

}  // namespace
}  // namespace tavimo::platform
