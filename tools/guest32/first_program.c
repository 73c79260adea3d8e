/* The first program of the 32-bit guest (see make_guest.sh): loads the kernel's modules that lie in /m, mounts the disk
 * and goes on with the script on it. It stands alone, without a C library, as the build machine has none for 32 bits;
 * the numbers are Linux's own of its system calls. */

enum {
  kWrite = 4,
  kOpen = 5,
  kClose = 6,
  kChangeFolder = 12,
  kExecute = 11,
  kMount = 21,
  kPause = 29,
  kChangeRoot = 61
};
enum { kDuplicate = 63, kSleep = 162, kLoadModule = 350 };
enum { kReadAndWrite = 2, kMoveMount = 8192, kModuleCount = 11, kTries = 50 };

static long Call(long number, long a, long b, long c, long d, long e) {
  long result;
  __asm__ volatile("int $0x80" : "=a"(result) : "a"(number), "b"(a), "c"(b), "d"(c), "S"(d), "D"(e) : "memory");
  return result;
}

static void Say(const char* text) {
  long length = 0;
  while (text[length] != 0) ++length;
  Call(kWrite, 1, (long)text, length, 0, 0);
}

static void OpenConsole(void) {
  Call(kMount, (long)"none", (long)"/dev", (long)"devtmpfs", 0, 0);
  const long console = Call(kOpen, (long)"/dev/console", kReadAndWrite, 0, 0, 0);
  for (long stream = 0; stream < 3; ++stream) Call(kDuplicate, console, stream, 0, 0, 0);
}

static void LoadModules(void) {
  char name[] = "/m/00.ko";
  for (int i = 0; i < kModuleCount; ++i) {
    name[3] = (char)('0' + i / 10);
    name[4] = (char)('0' + i % 10);
    const long file = Call(kOpen, (long)name, 0, 0, 0, 0);
    if (Call(kLoadModule, file, (long)"", 0, 0, 0) != 0) Say("a module could not be loaded\n");
    Call(kClose, file, 0, 0, 0, 0);
  }
}

/* The disk appears a moment after its driver. */
static void MountDisk(void) {
  const long aFifthOfASecond[2] = {0, 200000000};
  for (int i = 0; i < kTries; ++i) {
    if (Call(kMount, (long)"/dev/vda", (long)"/r", (long)"ext4", 0, 0) == 0) return;
    Call(kSleep, (long)aFifthOfASecond, 0, 0, 0, 0);
  }
  Say("the disk could not be mounted\n");
}

static void GoToDisk(void) {
  Call(kMount, (long)"none", (long)"/r/dev", (long)"devtmpfs", 0, 0);
  Call(kChangeFolder, (long)"/r", 0, 0, 0, 0);
  Call(kMount, (long)".", (long)"/", 0, kMoveMount, 0);
  Call(kChangeRoot, (long)".", 0, 0, 0, 0);
  Call(kChangeFolder, (long)"/", 0, 0, 0, 0);
}

void _start(void) {
  static const char* const words[] = {"/bin/bash", "/guest/run.sh", 0};
  static const char* const settings[] = {"PATH=/usr/sbin:/usr/bin:/sbin:/bin", "HOME=/guest", "TERM=dumb", 0};
  OpenConsole();
  LoadModules();
  MountDisk();
  GoToDisk();
  Call(kExecute, (long)words[0], (long)words, (long)settings, 0, 0);
  Say("there is no shell to go on with\n");
  for (;;) Call(kPause, 0, 0, 0, 0, 0);
}
