/* Loaded before the C library into a program under test: at the Nth call that changes a file the program dies, as in a
 * power cut, or the call fails, as on a full disk.
 *
 *   TAVIMO_DIE_AT=N    _exit(99) before the Nth call
 *   TAVIMO_FAIL_AT=N   the Nth call fails with ENOSPC
 *   TAVIMO_CALLS=FILE  how many calls there were, written at the end
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

static long count;
static int silent; /* while this file's own calls run */

static long number(const char* name) {
  const char* value = getenv(name);
  return value ? atol(value) : -1;
}

/* 1 when the call is to fail. */
static int meet(void) {
  if (silent) return 0;
  ++count;
  if (count == number("TAVIMO_DIE_AT")) _exit(99);
  if (count != number("TAVIMO_FAIL_AT")) return 0;
  errno = ENOSPC;
  return 1;
}

__attribute__((destructor)) static void report(void) {
  const char* path = getenv("TAVIMO_CALLS");
  if (!path) return;
  silent = 1;
  FILE* file = fopen(path, "w");
  if (file) {
    fprintf(file, "%ld\n", count);
    fclose(file);
  }
}

#define WRAP(result, name, parameters, arguments)          \
  result name parameters {                                 \
    static result(*next) parameters;                       \
    if (!next) *(void**)(&next) = dlsym(RTLD_NEXT, #name); \
    return meet() ? (result)-1 : next arguments;           \
  }

WRAP(int, rename, (const char* from, const char* to), (from, to))
WRAP(int, renameat, (int a, const char* from, int b, const char* to), (a, from, b, to))
WRAP(int, link, (const char* from, const char* to), (from, to))
WRAP(int, linkat, (int a, const char* from, int b, const char* to, int flags), (a, from, b, to, flags))
WRAP(int, symlink, (const char* target, const char* path), (target, path))
WRAP(int, unlink, (const char* path), (path))
WRAP(int, unlinkat, (int folder, const char* path, int flags), (folder, path, flags))
WRAP(int, remove, (const char* path), (path))
WRAP(int, mkdir, (const char* path, mode_t mode), (path, mode))
WRAP(int, rmdir, (const char* path), (path))
WRAP(int, truncate, (const char* path, off_t length), (path, length))
WRAP(int, ftruncate, (int file, off_t length), (file, length))
WRAP(int, ftruncate64, (int file, off64_t length), (file, length))
WRAP(int, utimensat, (int folder, const char* path, const struct timespec times[2], int flags),
     (folder, path, times, flags))
WRAP(int, futimens, (int file, const struct timespec times[2]), (file, times))
WRAP(int, chmod, (const char* path, mode_t mode), (path, mode))
WRAP(int, fchmod, (int file, mode_t mode), (file, mode))
WRAP(int, fchmodat, (int folder, const char* path, mode_t mode, int flags), (folder, path, mode, flags))
WRAP(ssize_t, copy_file_range, (int in, off64_t* from, int out, off64_t* to, size_t length, unsigned flags),
     (in, from, out, to, length, flags))
WRAP(ssize_t, sendfile, (int out, int in, off_t* offset, size_t length), (out, in, offset, length))

/* Standard output and error are no files of the learner's. */
#define WRAP_WRITE(name, parameters, arguments)            \
  ssize_t name parameters {                                \
    static ssize_t(*next) parameters;                      \
    if (!next) *(void**)(&next) = dlsym(RTLD_NEXT, #name); \
    return file > 2 && meet() ? -1 : next arguments;       \
  }

WRAP_WRITE(write, (int file, const void* bytes, size_t length), (file, bytes, length))
WRAP_WRITE(writev, (int file, const struct iovec* parts, int partCount), (file, parts, partCount))
WRAP_WRITE(pwrite, (int file, const void* bytes, size_t length, off_t offset), (file, bytes, length, offset))
WRAP_WRITE(pwrite64, (int file, const void* bytes, size_t length, off64_t offset), (file, bytes, length, offset))

/* Only those that make or empty a file count. */
enum { kTemporary = O_TMPFILE & ~O_DIRECTORY };
#define WRAP_OPEN(name, parameters, last, arguments)                     \
  int name parameters {                                                  \
    static int(*next) parameters;                                        \
    if (!next) *(void**)(&next) = dlsym(RTLD_NEXT, #name);               \
    mode_t mode = 0;                                                     \
    va_list more;                                                        \
    va_start(more, last);                                                \
    if (flags & (O_CREAT | kTemporary)) mode = va_arg(more, mode_t);     \
    va_end(more);                                                        \
    if ((flags & (O_CREAT | O_TRUNC | kTemporary)) && meet()) return -1; \
    return next arguments;                                               \
  }

WRAP_OPEN(open, (const char* path, int flags, ...), flags, (path, flags, mode))
WRAP_OPEN(open64, (const char* path, int flags, ...), flags, (path, flags, mode))
WRAP_OPEN(openat, (int folder, const char* path, int flags, ...), flags, (folder, path, flags, mode))
WRAP_OPEN(openat64, (int folder, const char* path, int flags, ...), flags, (folder, path, flags, mode))

/* The C++ library's streams open files through this one. */
FILE* fopen64(const char* path, const char* mode) {
  static FILE* (*next)(const char*, const char*);
  if (!next) *(void**)(&next) = dlsym(RTLD_NEXT, "fopen64");
  const int isWriting = mode[0] != 'r';
  return isWriting && meet() ? NULL : next(path, mode);
}
