// What a ready printer answers to each status request of a model: the bytes the driver
// sends, and the bytes the printer sends back. The memory port and the pseudo-terminal
// printer of the benchmarks both answer from such a table.
//
// Some ticket printers run their line scrambled (every byte XORed with a key, both ways).
// A printer with a key recognises its requests plain or scrambled, and answers the way
// the request came.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace posprint::bench {

struct PrinterAnswer {
  std::string request;
  std::string answer;
};

struct PrinterAnswers {
  std::vector<PrinterAnswer> rules;
  unsigned char scrambleKey = 0;  // 0: the line is always plain
};

namespace detail {
inline const std::string* Match(const PrinterAnswers& answers, std::string_view received) {
  for (const PrinterAnswer& rule : answers.rules) {
    if (received.size() >= rule.request.size() &&
        received.substr(received.size() - rule.request.size()) == rule.request) {
      return &rule.answer;
    }
  }
  return nullptr;
}
}  // namespace detail

// When `line` (the bytes as they came over the line: all so far, or the last write) ends
// with a request, the answer as it goes back on the line into `out`, and true.
inline bool AnswerOnLine(const PrinterAnswers& answers, std::string_view line, std::string& out) {
  if (const std::string* answer = detail::Match(answers, line)) {
    out = *answer;
    return true;
  }
  if (answers.scrambleKey == 0) return false;
  std::string plain(line);
  for (char& c : plain) c = static_cast<char>(c ^ answers.scrambleKey);
  const std::string* answer = detail::Match(answers, plain);
  if (!answer) return false;
  out = *answer;
  for (char& c : out) c = static_cast<char>(c ^ answers.scrambleKey);
  return true;
}

}  // namespace posprint::bench
