// End-to-end runs for the printer families: `posprint run --json` loads a driver from the
// plug-in and prints a job to a PtyPrinter that plays the printer.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/host_helpers.h"
#include "support/bytes.h"
#include "support/pty_printer.h"

namespace posprint::test {

struct JobRun {
  const char* model;
  std::vector<std::string> params;    // "key=value", each after --param
  std::vector<std::string> commands;  // a command's name, or its name, a blank and its element
};

// Runs the job, waits until the printer has read as many bytes as `expected` holds (the host
// may exit before the printer's thread has drained the line) and stops the printer. The
// host must exit 0 with one successful result line per command, in order, and the printer
// must have read `expected` (descrambled).
inline void RunJob(PtyPrinter& printer, const JobRun& run, const std::string& expected) {
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  TempDir dir;
  std::string job;
  std::vector<std::string> lines;  // the result line expected for each command
  for (const std::string& command : run.commands) {
    const std::string name = command.substr(0, command.find(' '));
    job += Command(name, command.size() > name.size() ? command.substr(name.size() + 1) : "");
    lines.push_back(R"({"command":")" + name + R"(","ok":true,"errors":[]})");
  }
  std::vector<std::string> args = {"run", "--json", "--model", run.model, "--port", printer.PortName()};
  for (const std::string& param : run.params) args.insert(args.end(), {"--param", param});
  args.push_back(dir.Write("job.xml", Job(job)));
  const ProgramRun result = Posprint(args);
  printer.WaitForBytes(expected.size(), 5000);
  printer.Stop();
  EXPECT_EQ(result.status, 0) << result.out << result.err;
  EXPECT_EQ(Lines(result.out), lines);
  EXPECT_EQ(ToHex(printer.Received()), ToHex(expected));
}

}  // namespace posprint::test
