// The receipt family's test helpers: a driver on a scripted port with its own logo folder,
// the printer answering its status requests, and a hand-written interleaved 2 of 5 symbol.
#pragma once

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "platform/logo_files.h"
#include "support/driver_fixture.h"
#include "support/run_program.h"

namespace receipt_test {

using namespace posprint::test;

inline std::string Font(const char* attributes) { return std::string("<SINGLEFIELD ") + attributes + "/>"; }
inline std::string Single(const std::string& text) { return "<SINGLEFIELD><Field>" + text + "</Field></SINGLEFIELD>"; }

template <class Driver>
class DriverTest : public DriverFixture<Driver> {
 protected:
  DriverTest() { posprint::SetLogoDirectory(logos.Path()); }
  void FreshPrinter() override { this->port.OnWrite(nullptr); }
  void Prepare(const std::string& reply) override {
    if (!reply.empty()) Answer(reply);
  }
  std::string Received() const override { return this->Line(); }

  // The printer's answers to its status requests, in turn: `replies` holds them split by ';'
  // (the last one repeats, an empty one is silence), each in bursts split by '|'; "00@500":
  // the burst comes 500 ms after it is first waited for.
  void Answer(const std::string& replies) {
    std::vector<std::string> answers;
    std::istringstream in(replies);
    for (std::string answer; std::getline(in, answer, ';');) answers.push_back(answer);
    auto asked = std::make_shared<std::size_t>(0);
    this->port.OnWrite([request = statusRequest, answers, asked](posprint::ScriptedPort& p, const std::string& sent) {
      const bool answer = sent == request && !answers.empty();
      std::istringstream bursts(answer ? answers[std::min((*asked)++, answers.size() - 1)] : "");
      for (std::string burst; std::getline(bursts, burst, '|');) {
        const std::size_t at = burst.find('@');
        p.Answer(Hex(burst.substr(0, at)), at == std::string::npos ? 0 : std::stoi(burst.substr(at + 1)));
      }
    });
  }

  std::string statusRequest;  // the model's status request, as bytes
  TempDir logos;
};

// "12" at module width 1, one character a column (1 bar, 0 space): quiet zone, start
// (narrow bar/space x2), the pair 1|2 (bars of 1 = W N N N W, spaces of 2 = N W N N W, a
// wide element three columns), stop (wide bar, narrow space, narrow bar), quiet zone, and
// one column of padding to a whole byte.
inline const char* kItf12Columns =
    "0000000000" "1010" "111" "0" "1" "000" "1" "0" "1" "0" "111" "000" "111" "0" "1" "0000000000" "0";

// "1010" -> {0xFF, 0x00, 0xFF, 0x00}: the bit-image columns of a bar pattern.
inline std::string ColumnBytes(const std::string& columns) {
  std::string bytes;
  for (char c : columns) bytes += c == '1' ? '\xFF' : '\x00';
  return bytes;
}

}  // namespace receipt_test
