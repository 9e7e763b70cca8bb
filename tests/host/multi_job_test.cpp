// posprint run with several job files: each is a ticket, run in turn on the same driver,
// configured once; the commands are passed through as written, so the port stays as the
// previous file left it. A progress line goes to stderr only when it is a terminal.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>

#include "host/host_helpers.h"
#include "support/bytes.h"

extern char** environ;

namespace posprint::test {
namespace {

// ESC t 0, ESC @, GS b: the TMT70's open.
const char* const kOpenBytes = "1B 74 00 1B 40 1D 62";

class MultiJob : public ::testing::Test {
 protected:
  std::vector<std::string> Args(const std::vector<std::string>& jobs, std::vector<std::string> extra = {}) const {
    std::vector<std::string> args = {"run", "--model", "TMT70", "--port", "file:" + dir.Path() + "/out.bin"};
    args.insert(args.end(), extra.begin(), extra.end());
    for (const std::string& job : jobs) args.push_back(dir.Path() + "/" + job);
    return args;
  }
  std::string Sent() const { return ToHex(dir.Read("out.bin")); }

  TempDir dir;
};

TEST_F(MultiJob, JsonLinesCarryTheJobNumberAndTheSecondInitDoesNothing) {
  dir.Write("a.xml", Job(Command("INIT_PRINTER") + Command("NEWPRINT", "<LINEFEED Value=\"1\"/>")));
  dir.Write("b.xml", Job(Command("INIT_PRINTER") + Command("NEWPRINT", "<LINEFEED Value=\"2\"/>") +
                         Command("STOP_PRINTER")));
  const ProgramRun run = Posprint(Args({"a.xml", "b.xml"}, {"--json"}));
  EXPECT_EQ(run.status, 0) << run.err;
  const std::vector<std::string> expected = {
      R"({"job":1,"command":"INIT_PRINTER","ok":true,"errors":[]})",
      R"({"job":1,"command":"NEWPRINT","ok":true,"errors":[]})",
      R"({"job":2,"command":"INIT_PRINTER","ok":true,"errors":[]})",
      R"({"job":2,"command":"NEWPRINT","ok":true,"errors":[]})",
      R"({"job":2,"command":"STOP_PRINTER","ok":true,"errors":[]})",
  };
  EXPECT_EQ(Lines(run.out), expected);
  // One open: the second file's INIT_PRINTER finds the driver open and sends nothing.
  EXPECT_EQ(Sent(), std::string(kOpenBytes) + " 0D 0A 0D 0A 0D 0A");
  EXPECT_EQ(run.err, "") << "no progress line when stderr is not a terminal";
}

TEST_F(MultiJob, AStopPrinterClosesThePortForTheNextFile) {
  dir.Write("a.xml", Job(Command("INIT_PRINTER") + Command("STOP_PRINTER")));
  dir.Write("b.xml", Job(Command("NEWPRINT", "<LINEFEED Value=\"1\"/>") + Command("INIT_PRINTER") +
                         Command("NEWPRINT", "<LINEFEED Value=\"1\"/>")));
  const ProgramRun run = Posprint(Args({"a.xml", "b.xml"}, {"--json"}));
  EXPECT_EQ(run.status, 1) << run.err;
  const std::vector<std::string> expected = {
      R"({"job":1,"command":"INIT_PRINTER","ok":true,"errors":[]})",
      R"({"job":1,"command":"STOP_PRINTER","ok":true,"errors":[]})",
      R"({"job":2,"command":"NEWPRINT","ok":false,"errors":[3]})",
      R"({"job":2,"command":"INIT_PRINTER","ok":true,"errors":[]})",
      R"({"job":2,"command":"NEWPRINT","ok":true,"errors":[]})",
  };
  EXPECT_EQ(Lines(run.out), expected);
}

TEST_F(MultiJob, ExitStatusCoversEveryFile) {
  dir.Write("good.xml", Job(Command("INIT_PRINTER") + Command("START_PRINT")));
  // A file never answers the status query: CHECK fails with 101.
  dir.Write("bad.xml", Job(Command("INIT_PRINTER") + Command("CHECK")));
  struct Case {
    const char* name;
    std::vector<std::string> jobs;
    int status;
  };
  const Case cases[] = {
      {"all succeed", {"good.xml", "good.xml", "good.xml"}, 0},
      {"the last fails", {"good.xml", "good.xml", "bad.xml"}, 1},
      {"the first fails, the later ones still run", {"bad.xml", "good.xml"}, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const ProgramRun run = Posprint(Args(c.jobs, {"--json"}));
    EXPECT_EQ(run.status, c.status) << run.err;
    EXPECT_EQ(Lines(run.out).size(), 2 * c.jobs.size());
  }
}

TEST_F(MultiJob, AMissingSecondFileStopsEverythingBeforeItRuns) {
  dir.Write("a.xml", Job(Command("INIT_PRINTER") + Command("STOP_PRINTER")));
  const ProgramRun run = Posprint(Args({"a.xml", "missing.xml"}));
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_NE(run.err.find("missing.xml: cannot open"), std::string::npos) << run.err;
  EXPECT_FALSE(std::filesystem::exists(dir.Path() + "/out.bin")) << "a command ran";
}

TEST_F(MultiJob, PersonReadableLinesNameEachJobAndLineUpAcrossThem) {
  dir.Write("a.xml", Job(Command("INIT_PRINTER")));
  dir.Write("b.xml", Job(Command("NEWPRINT", "<SINGLEFIELD><Field>x</Field></SINGLEFIELD>")));
  const ProgramRun run = Posprint(Args({"a.xml", "b.xml"}));
  EXPECT_EQ(run.status, 0) << run.err;
  const std::vector<std::string> expected = {
      "job 1 of 2: " + dir.Path() + "/a.xml",
      "INIT_PRINTER         ok",
      "job 2 of 2: " + dir.Path() + "/b.xml",
      "NEWPRINT SINGLEFIELD ok",
  };
  EXPECT_EQ(Lines(run.out), expected);
}

// Runs posprint with stderr on a pseudo-terminal and stdout to /dev/null; returns what
// appeared on the terminal.
std::string TerminalStderr(const std::vector<std::string>& args, int* status) {
  const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
  if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0) return "no pseudo-terminal";
  const std::string slaveName = ::ptsname(master);
  std::vector<std::string> argv = {POSPRINT_HOST_PATH};
  argv.insert(argv.end(), args.begin(), args.end());
  std::vector<std::string> env = {std::string("POSPRINT_PLUGIN=") + POSPRINT_PLUGIN_PATH};
  for (char** entry = environ; *entry; ++entry)
    if (std::strncmp(*entry, "POSPRINT_PLUGIN=", 16) != 0) env.push_back(*entry);
  std::vector<char*> argp, envp;
  for (std::string& arg : argv) argp.push_back(arg.data());
  for (std::string& entry : env) envp.push_back(entry.data());
  argp.push_back(nullptr);
  envp.push_back(nullptr);

  const pid_t child = ::fork();
  if (child == 0) {
    const int slave = ::open(slaveName.c_str(), O_RDWR);
    const int null = ::open("/dev/null", O_RDWR);
    ::dup2(null, 0);
    ::dup2(null, 1);
    ::dup2(slave, 2);
    ::execve(argp[0], argp.data(), envp.data());
    ::_exit(127);
  }
  std::string seen;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (std::chrono::steady_clock::now() < deadline) {
    pollfd poll{master, POLLIN, 0};
    if (::poll(&poll, 1, 100) <= 0) {
      if (::waitpid(child, status, WNOHANG) == child) break;
      continue;
    }
    char buffer[512];
    const ssize_t got = ::read(master, buffer, sizeof buffer);
    if (got <= 0) break;  // EIO: the child closed the terminal
    seen.append(buffer, static_cast<std::size_t>(got));
  }
  int raw = 0;
  if (::waitpid(child, &raw, 0) == child) *status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  ::close(master);
  return seen;
}

TEST_F(MultiJob, ProgressLineOnATerminalWipedAtTheEnd) {
  dir.Write("a.xml", Job(Command("INIT_PRINTER") + Command("CHECK")));
  dir.Write("b.xml", Job(Command("NEWPRINT", "<LINEFEED Value=\"1\"/>") + Command("STOP_PRINTER")));
  int status = -1;
  const std::string terminal = TerminalStderr(Args({"a.xml", "b.xml"}), &status);
  EXPECT_EQ(status, 1) << terminal;
  // Drawn in place: CR, erase line, the text. 7 bytes of the open, then 3 of the status
  // question; CHECK on a file reports 101.
  EXPECT_NE(terminal.find("\r\033[Kjob 1 of 2 (a.xml): command 2 of 2 CHECK, 10 bytes sent, last status 101"),
            std::string::npos)
      << terminal;
  EXPECT_NE(terminal.find("job 2 of 2 (b.xml): command 2 of 2 STOP_PRINTER, 12 bytes sent, last status 101"),
            std::string::npos)
      << terminal;
  // The terminal is left with an empty line.
  const std::string wipe = "\r\033[K";
  ASSERT_GE(terminal.size(), wipe.size());
  EXPECT_EQ(terminal.substr(terminal.size() - wipe.size()), wipe);

  const std::string quiet = TerminalStderr(Args({"a.xml", "b.xml"}, {"--json"}), &status);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(quiet, "") << "--json draws no progress";
}

}  // namespace
}  // namespace posprint::test
