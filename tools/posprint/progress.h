// The progress line of posprint run: one line on stderr, redrawn in place after each
// command, for a person watching a terminal while several tickets go out:
//
//   job 2 of 3 (bar.xml): command 7 of 12 NEWPRINT LOGO, 1532 bytes sent, last status 100
//
// The command is the one running (a slow CHECK shows while it waits), or the last one done.
// "bytes sent" is every byte the ports accepted since the run began (the platform's count,
// posprint::BytesWritten), "last status" the result of the latest CHECK: 100 when it
// succeeded, otherwise the last code it recorded (102 paper out ...), "-" before any CHECK.
//
// It is drawn only when stderr is a terminal and the run does not write JSON; the result
// lines on stdout are never mixed with it: the line is wiped before each of them is written
// and drawn again after, and wiped for good at the end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "job_runner.h"

namespace posprint::host {

class Progress {
 public:
  // Draws on `terminal` when enabled; does nothing at all otherwise.
  Progress(std::FILE* terminal, bool enabled, std::size_t jobCount);
  ~Progress() { Clear(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void StartJob(std::size_t index, const std::string& path, std::size_t commandCount);  // index from 1
  // Before command `number` (from 1) runs; `label` names it ("NEWPRINT LOGO").
  void Running(std::size_t number, const std::string& label);
  // Before a result line goes out: wipes the line.
  void Clear();
  // After a command: takes its status if it was a CHECK, draws the line.
  void Done(const CommandResult& result);

  // The text of the line, as drawn (for the width of the terminal, cut by Draw).
  std::string Line() const;

 private:
  void Draw();

  std::FILE* terminal_;
  bool enabled_;
  bool drawn_ = false;
  std::size_t jobCount_;
  std::size_t job_ = 0;
  std::string path_;
  std::size_t commandCount_ = 0;
  std::size_t command_ = 0;  // 0 before the first
  std::string label_;
  std::uint64_t bytesAtStart_;
  int lastStatus_ = -1;  // -1: no CHECK yet
};

// Whether progress is drawn: stderr is a terminal and the output is not JSON.
bool ProgressWanted(bool json);

}  // namespace posprint::host
