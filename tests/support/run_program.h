// Runs a program (the posprint host) as a child process and captures what it printed.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace posprint::test {

struct ProgramRun {
  int status = -1;  // the exit status; -1 when it was killed (time limit) or could not start
  std::string out;  // stdout
  std::string err;  // stderr
  bool timedOut = false;
};

// Runs `program` with `args` (argv[1]...), stdin from /dev/null. `environment` entries
// are set (an empty value unsets the variable; a later entry for a name wins) on top of
// the test's own environment.
// A child still running after timeoutMs is killed, so a hung host fails the test
// instead of hanging it.
ProgramRun RunProgram(const std::string& program, const std::vector<std::string>& args,
                      const std::vector<std::pair<std::string, std::string>>& environment = {},
                      int timeoutMs = 60000);

// A file with `content` in a fresh temporary directory, removed by the destructor.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  const std::string& Path() const { return path_; }
  // Writes Path()/name and returns its full path.
  std::string Write(const std::string& name, const std::string& content) const;
  // The content of Path()/name ("" when absent).
  std::string Read(const std::string& name) const;

 private:
  std::string path_;
};

// Splits text into lines (without their '\n'); a final line without '\n' counts too.
std::vector<std::string> Lines(const std::string& text);

}  // namespace posprint::test
