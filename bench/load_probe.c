/* Loads the library of the first argument, calls its function of the second, and prints the nanoseconds that both took.
 * A program of its own, because a process loads a library once. */
#define _POSIX_C_SOURCE 200809L
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <time.h>

int main(int argc, char** argv) {
  struct timespec begin, end;
  void* library;
  double (*function)(void) = 0;
  if (argc != 3) return 2;
  clock_gettime(CLOCK_MONOTONIC, &begin);
  library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (library) *(void**)&function = dlsym(library, argv[2]);
  if (!function) {
    fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  function();
  clock_gettime(CLOCK_MONOTONIC, &end);
  printf("%lld\n", (long long)(end.tv_sec - begin.tv_sec) * 1000000000 + (end.tv_nsec - begin.tv_nsec));
  return 0;
}
