#include "support/run_program.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

namespace posprint::test {
namespace {

using Steady = std::chrono::steady_clock;

// The child's environment: the test's own, with the overrides applied. Built before the
// fork, because between fork and exec a threaded process may only make async-signal-safe
// calls (another thread may hold the allocator's lock).
std::vector<std::string> ChildEnvironment(const std::vector<std::pair<std::string, std::string>>& overrides) {
  std::map<std::string, std::string> wanted;  // the last override of a name wins
  for (const auto& [name, value] : overrides) wanted[name] = value;
  std::vector<std::string> entries;
  for (char** entry = environ; *entry; ++entry) {
    const std::string text = *entry;
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || !wanted.count(text.substr(0, equals))) entries.push_back(text);
  }
  for (const auto& [name, value] : wanted) {
    if (!value.empty()) entries.push_back(name + "=" + value);
  }
  return entries;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

[[noreturn]] void ExecChild(const char* program, char* const* argv, char* const* envp, int out, int err) {
  const int input = ::open("/dev/null", O_RDONLY);
  if (input >= 0) ::dup2(input, 0);
  ::dup2(out, 1);
  ::dup2(err, 2);
  ::execve(program, argv, envp);
  ::_exit(127);
}

}  // namespace

ProgramRun RunProgram(const std::string& program, const std::vector<std::string>& args,
                      const std::vector<std::pair<std::string, std::string>>& environment, int timeoutMs) {
  ProgramRun run;
  int out[2], err[2];
  if (::pipe2(out, O_CLOEXEC) != 0) return run;
  if (::pipe2(err, O_CLOEXEC) != 0) {
    ::close(out[0]);
    ::close(out[1]);
    return run;
  }
  std::vector<std::string> argTexts = {program};
  argTexts.insert(argTexts.end(), args.begin(), args.end());
  std::vector<std::string> envTexts = ChildEnvironment(environment);
  const std::vector<char*> argv = Pointers(argTexts);
  const std::vector<char*> envp = Pointers(envTexts);
  const pid_t child = ::fork();
  if (child == 0) ExecChild(program.c_str(), argv.data(), envp.data(), out[1], err[1]);
  ::close(out[1]);
  ::close(err[1]);
  if (child < 0) {
    ::close(out[0]);
    ::close(err[0]);
    return run;
  }

  const auto deadline = Steady::now() + std::chrono::milliseconds(timeoutMs);
  pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
  std::string* sinks[2] = {&run.out, &run.err};
  int open = 2;
  while (open > 0) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Steady::now()).count();
    if (left <= 0) {
      run.timedOut = true;
      ::kill(child, SIGKILL);
      break;
    }
    if (::poll(fds, 2, static_cast<int>(left)) < 0) continue;
    for (int i = 0; i < 2; ++i) {
      if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR))) continue;
      char buffer[4096];
      const ssize_t n = ::read(fds[i].fd, buffer, sizeof buffer);
      if (n > 0) {
        sinks[i]->append(buffer, static_cast<std::size_t>(n));
      } else {
        ::close(fds[i].fd);
        fds[i].fd = -1;
        --open;
      }
    }
  }
  for (const pollfd& fd : fds) {
    if (fd.fd >= 0) ::close(fd.fd);
  }
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (!run.timedOut && WIFEXITED(status)) run.status = WEXITSTATUS(status);
  return run;
}

TempDir::TempDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "posprint-test-XXXXXX").string();
  if (::mkdtemp(pattern.data())) path_ = pattern;
}

TempDir::~TempDir() {
  std::error_code ignored;
  if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
}

std::string TempDir::Write(const std::string& name, const std::string& content) const {
  const std::string path = path_ + "/" + name;
  std::ofstream(path, std::ios::binary) << content;
  return path;
}

std::string TempDir::Read(const std::string& name) const {
  std::ifstream file(path_ + "/" + name, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace posprint::test
