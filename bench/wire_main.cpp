// posprint_wire: the reference job sent through `posprint run` to a printer on a
// pseudo-terminal that takes bytes no faster than a serial line of the given baud rate.
//
// For each model that is built and each baud rate it prints one line of JSON:
//   wall_ms      from starting posprint to the last byte having crossed the line (or to
//                posprint's exit if that comes later);
//   wire_ms      the line time of the bytes received, 10 bits a byte;
//   waits_ms     the sleeps posprint made (the driver's specified waits: a presenter's
//                second, a printer's settling time, a retry's pause), noted by the
//                preloaded wait meter (wait_meter.cpp);
//   overhead_ms  the time when the line was idle and no wait was running: what the host
//                and the driver add (start-up, work, status round trips). A wait that runs
//                while buffered bytes are still crossing the line counts once, so
//                overhead = wall - |line busy or waiting|, and overhead_pct is its share of
//                the wire time.
//
//   posprint_wire [--baud 115200,9600] [--model TMT70] [--runs 3]
//   posprint_wire --peak-rss PROGRAM ARGS...   runs the program (stdout to /dev/null) and
//                                              prints its peak resident memory in KB
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench_job.h"
#include "mem_port.h"
#include "memory_files.h"
#include "models.h"
#include "platform/clock.h"
#include "platform/logo_files.h"
#include "pty_line.h"

extern char** environ;

namespace posprint::bench {
namespace {

using Clock = PtyLine::Clock;

struct InMemoryRun {
  std::uint64_t bytes = 0;
  long waitsMs = 0;
  int waits = 0;
};

// The whole job (session and ticket) on the memory port with a clock that does not wait:
// the bytes the printer must receive and the waits the driver makes on the way.
bool RunInMemory(const Model& model, const std::string& jobPath, InMemoryRun& out, std::string* error) {
  BenchJob job;
  if (!job.Load(jobPath, error)) return false;
  FakeClock clock;
  ScopedClock scoped(clock);
  ResetMemoryPort();
  {
    DriverSession session(model.factory, model.parameters, model.memoryPort);
    if (!session.Open(job, error)) return false;
    session.RunTicket(job);
    session.Close(job);
  }
  out.bytes = MemoryPortTotals().bytes;
  out.waitsMs = clock.TotalSleptMs();
  out.waits = clock.Waits();
  return true;
}

struct HostRun {
  double wallMs = 0;
  double exitMs = 0;
  double waitsMs = 0;     // the sleeps, end to end
  int waits = 0;
  double coveredMs = 0;   // line busy or a wait running
  std::uint64_t received = 0;
  long maxRssKb = 0;
  int status = -1;
};

using Interval = PtyLine::Interval;

// The sleeps noted by the wait meter.
std::vector<Interval> ReadWaits(const std::string& path) {
  std::vector<Interval> waits;
  std::FILE* file = std::fopen(path.c_str(), "r");
  if (!file) return waits;
  long long start = 0, end = 0, asked = 0;
  while (std::fscanf(file, "%lld %lld %lld", &start, &end, &asked) == 3) {
    waits.emplace_back(Clock::time_point(std::chrono::nanoseconds(start)), Clock::time_point(std::chrono::nanoseconds(end)));
  }
  std::fclose(file);
  return waits;
}

// The length of the union of the intervals, clipped to [from, to].
double UnionMs(std::vector<Interval> intervals, Clock::time_point from, Clock::time_point to) {
  std::sort(intervals.begin(), intervals.end());
  double total = 0;
  Clock::time_point reached = from;
  for (const Interval& interval : intervals) {
    const Clock::time_point start = std::max(interval.first, reached);
    const Clock::time_point end = std::min(interval.second, to);
    if (end > start) {
      total += std::chrono::duration<double, std::milli>(end - start).count();
      reached = end;
    }
  }
  return total;
}

bool RunHost(const Model& model, const std::string& jobPath, long baud, std::uint64_t expected, HostRun& out,
             std::string* error) {
  PtyLine line(baud, model.answers);
  if (!line.Start(error)) return false;
  std::vector<std::string> args = {POSPRINT_HOST_PATH, "run", "--model", model.name, "--port",
                                   line.SlaveName() + "@" + std::to_string(baud), "--logo-dir", BenchDirectory()};
  for (const auto& [key, value] : model.parameters) {
    args.push_back("--param");
    args.push_back(key + "=" + value);
  }
  args.push_back(jobPath);
  std::vector<char*> argv;
  for (std::string& arg : args) argv.push_back(arg.data());
  argv.push_back(nullptr);

  char waitLog[] = "/tmp/posprint-waits-XXXXXX";
  const int logFd = ::mkstemp(waitLog);
  if (logFd >= 0) ::close(logFd);
  std::vector<std::string> environment;
  for (char** e = environ; *e; ++e) {
    if (std::strncmp(*e, "POSPRINT_PLUGIN=", 16) != 0 && std::strncmp(*e, "LD_PRELOAD=", 11) != 0)
      environment.emplace_back(*e);
  }
  environment.emplace_back(std::string("POSPRINT_PLUGIN=") + POSPRINT_PLUGIN_PATH);
  environment.emplace_back(std::string("LD_PRELOAD=") + POSPRINT_WAIT_METER_PATH);
  environment.emplace_back(std::string("POSPRINT_WAIT_LOG=") + waitLog);
  std::vector<char*> envp;
  for (std::string& e : environment) envp.push_back(e.data());
  envp.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  const Clock::time_point start = Clock::now();
  pid_t pid = 0;
  const int spawned = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), envp.data());
  posix_spawn_file_actions_destroy(&actions);
  if (spawned != 0) {
    if (error) *error = std::string("cannot start ") + argv[0] + ": " + std::strerror(spawned);
    return false;
  }
  int status = 0;
  rusage usage{};
  ::wait4(pid, &status, 0, &usage);
  const Clock::time_point exited = Clock::now();
  // What is still in the line's buffer goes on crossing it after the host is gone.
  line.WaitForBytes(expected, 2000);
  const Clock::time_point lastByte = line.LastByteTime();
  const Clock::time_point end = lastByte > exited ? lastByte : exited;
  out.wallMs = std::chrono::duration<double, std::milli>(end - start).count();
  out.exitMs = std::chrono::duration<double, std::milli>(exited - start).count();
  std::vector<Interval> waits = ReadWaits(waitLog);
  ::unlink(waitLog);
  out.waits = static_cast<int>(waits.size());
  out.waitsMs = UnionMs(waits, start, end);
  std::vector<Interval> covered = line.BusyIntervals();
  covered.insert(covered.end(), waits.begin(), waits.end());
  out.coveredMs = UnionMs(covered, start, end);
  out.received = line.Received();
  out.maxRssKb = usage.ru_maxrss;
  out.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  line.Stop();
  return true;
}

std::vector<long> ParseList(const char* text) {
  std::vector<long> values;
  for (const char* p = text; *p;) {
    values.push_back(std::strtol(p, const_cast<char**>(&p), 10));
    if (*p == ',') ++p;
    else break;
  }
  return values;
}

}  // namespace
}  // namespace posprint::bench

namespace {

// The peak resident set of a program run to its end, in KB; -1 when it cannot start.
long PeakRss(char** argv) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t pid = 0;
  const int spawned = posix_spawn(&pid, argv[0], &actions, nullptr, argv, environ);
  posix_spawn_file_actions_destroy(&actions);
  if (spawned != 0) return -1;
  int status = 0;
  rusage usage{};
  ::wait4(pid, &status, 0, &usage);
  return usage.ru_maxrss;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace posprint::bench;
  if (argc > 2 && std::strcmp(argv[1], "--peak-rss") == 0) {
    const long kb = PeakRss(argv + 2);
    std::printf("%ld\n", kb);
    return kb < 0 ? 1 : 0;
  }
  std::vector<long> bauds = {115200, 9600};
  std::string onlyModel;
  int runs = 1;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::strcmp(argv[i], "--baud") == 0) bauds = ParseList(argv[i + 1]);
    else if (std::strcmp(argv[i], "--model") == 0) onlyModel = argv[i + 1];
    else if (std::strcmp(argv[i], "--runs") == 0) runs = std::atoi(argv[i + 1]);
  }
  RegisterMemoryPort();
  posprint::SetLogoDirectory(BenchDirectory());
  static MemoryFiles files;
  posprint::SetTerminalFileSource(&files);

  int failures = 0;
  for (const Model& model : Models()) {
    if (!model.factory || (!onlyModel.empty() && model.name != onlyModel)) continue;
    const std::string job = BenchDirectory() + (model.paper == Paper::kLabel ? "/label.xml" : "/receipt.xml");
    InMemoryRun memory;
    std::string error;
    if (!RunInMemory(model, job, memory, &error)) {
      std::fprintf(stderr, "posprint_wire: %s: %s\n", model.name.c_str(), error.c_str());
      ++failures;
      continue;
    }
    for (long baud : bauds) {
      for (int run = 0; run < runs; ++run) {
        HostRun host;
        if (!RunHost(model, job, baud, memory.bytes, host, &error)) {
          std::fprintf(stderr, "posprint_wire: %s: %s\n", model.name.c_str(), error.c_str());
          ++failures;
          continue;
        }
        const double wireMs = static_cast<double>(host.received) * 10.0 * 1000.0 / static_cast<double>(baud);
        const double overheadMs = host.wallMs - host.coveredMs;
        std::printf("{\"model\":\"%s\",\"job\":\"%s\",\"baud\":%ld,\"bytes\":%llu,\"expected_bytes\":%llu,"
                    "\"wall_ms\":%.1f,\"exit_ms\":%.1f,\"wire_ms\":%.1f,\"waits_ms\":%.1f,\"waits\":%d,"
                    "\"memory_waits_ms\":%ld,\"overhead_ms\":%.1f,\"overhead_pct\":%.2f,\"max_rss_kb\":%ld,"
                    "\"exit_status\":%d}\n",
                    model.name.c_str(), model.paper == Paper::kLabel ? "label" : "receipt", baud,
                    static_cast<unsigned long long>(host.received), static_cast<unsigned long long>(memory.bytes),
                    host.wallMs, host.exitMs, wireMs, host.waitsMs, host.waits, memory.waitsMs, overheadMs,
                    100.0 * overheadMs / wireMs, host.maxRssKb, host.status);
        std::fflush(stdout);
      }
    }
  }
  return failures == 0 ? 0 : 1;
}
