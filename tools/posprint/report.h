// What posprint run prints for each command.
//
// Person-readable (default), one line a command, the label padded to a common width:
//   INIT_PRINTER          ok
//   CHECK                 FAILED  errors 3, 1
//   NEWPRINT LOGO         FAILED  errors 10
// JSON (--json), one object a line, keys in this order:
//   {"command":"CHECK","ok":false,"errors":[3,1]}
//   {"command":"NEWPRINT","ok":true,"errors":[],"warnings":[{"character":"€","codepoint":"U+20AC"}]}
// "warnings" appears only when some text had characters the printer's code page cannot
// carry; those print as '?', and a warning naming them also goes to stderr in both modes.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

#include "job_runner.h"

namespace posprint::host {

// The command name (`""` when empty) followed by the job element's name, if any.
std::string Label(const CommandResult& result);

std::string HumanLine(const CommandResult& result, std::size_t labelWidth);
std::string JsonLine(const CommandResult& result);
// The stderr warning for unprintable characters; "" when there were none.
std::string WarningLine(const CommandResult& result);

// Prints each result as it comes: the line on `out`, a warning on `err`.
class Reporter {
 public:
  Reporter(std::FILE* out, std::FILE* err, bool json, std::size_t labelWidth)
      : out_(out), err_(err), json_(json), labelWidth_(labelWidth) {}
  void Report(const CommandResult& result);

 private:
  std::FILE* out_;
  std::FILE* err_;
  bool json_;
  std::size_t labelWidth_;
};

// Characters a label takes on a terminal (UTF-8 sequences count once).
std::size_t DisplayWidth(const std::string& utf8);

}  // namespace posprint::host
