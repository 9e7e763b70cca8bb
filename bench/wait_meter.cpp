// libposprint_wait_meter.so: preloaded into `posprint run` by the wire-speed bench
// (LD_PRELOAD), it notes every sleep the process makes (the waits a driver makes go to
// nanosleep through the platform clock) in the file named by POSPRINT_WAIT_LOG, one line
// a sleep: start and end on the monotonic clock in nanoseconds, and the time asked for.
// The program itself is not changed: each sleep still sleeps.
#include <dlfcn.h>
#include <fcntl.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

long long NowNs() {
  timespec ts{};
  clock_gettime(CLOCK_MONOTONIC, &ts);
  return static_cast<long long>(ts.tv_sec) * 1000000000LL + ts.tv_nsec;
}

long long Ns(const timespec* ts) { return static_cast<long long>(ts->tv_sec) * 1000000000LL + ts->tv_nsec; }

void Note(long long start, long long end, long long asked) {
  const char* path = std::getenv("POSPRINT_WAIT_LOG");
  if (!path || !*path) return;
  const int fd = ::open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  if (fd < 0) return;
  char line[96];
  const int length = std::snprintf(line, sizeof line, "%lld %lld %lld\n", start, end, asked);
  if (length > 0) (void)!::write(fd, line, static_cast<size_t>(length));
  ::close(fd);
}

}  // namespace

extern "C" int nanosleep(const timespec* request, timespec* remaining) {
  using Real = int (*)(const timespec*, timespec*);
  static Real real = reinterpret_cast<Real>(dlsym(RTLD_NEXT, "nanosleep"));
  const long long start = NowNs();
  const int result = real(request, remaining);
  if (request) Note(start, NowNs(), Ns(request));
  return result;
}

extern "C" int clock_nanosleep(clockid_t clock, int flags, const timespec* request, timespec* remaining) {
  using Real = int (*)(clockid_t, int, const timespec*, timespec*);
  static Real real = reinterpret_cast<Real>(dlsym(RTLD_NEXT, "clock_nanosleep"));
  const long long start = NowNs();
  const int result = real(clock, flags, request, remaining);
  if (request) Note(start, NowNs(), (flags & TIMER_ABSTIME) ? NowNs() - start : Ns(request));
  return result;
}
