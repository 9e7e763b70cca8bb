// The receipt family's test helpers: a driver on a scripted port, a fake clock (no wait is
// real), its own logo folder, a runner for tables of one-line cases, and a hand-written
// interleaved 2 of 5 symbol.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/aprinter.h"
#include "platform/clock.h"
#include "platform/logo_files.h"
#include "platform/nx_xml.h"
#include "platform/parameters.h"
#include "platform/scripted_port.h"
#include "support/bmp_builder.h"
#include "support/bytes.h"
#include "support/run_program.h"

namespace receipt_test {

using posprint::test::Hex;
using posprint::test::ToHex;
using Keys = std::initializer_list<std::pair<const wchar_t*, const wchar_t*>>;

// Times(3, "0A") -> "0A 0A 0A".
inline std::string Times(int count, const std::string& hex) {
  std::string out;
  for (int i = 0; i < count; ++i) out += (i ? " " : "") + hex;
  return out;
}
inline std::string Spaces(int count) { return Times(count, "20"); }
inline std::string Font(const char* attributes) { return std::string("<SINGLEFIELD ") + attributes + "/>"; }
inline std::string Single(const std::string& text) { return "<SINGLEFIELD><Field>" + text + "</Field></SINGLEFIELD>"; }
// A 1-bit BMP drawn with '#' (black) and '.' (white), top row first.
inline std::string Bmp(const std::vector<std::string>& rows) {
  const std::vector<std::uint8_t> file = posprint::test::MonoBmp(rows);
  return std::string(file.begin(), file.end());
}

// One row: a fresh open with `keys`, the printer answering `reply` (hex; see Answer) to its
// status requests, then `input`: NEWPRINT with each field when it starts with '<', a record
// operation such as "CutRecord()", or a command.
struct Case {
  const char* name;
  Keys keys;
  std::string reply, input;
  int result;         // 1: success; else failure with this error recorded (0: none); or a record's result
  std::string sent;   // hex: all that went on the line after the open
  int lineWidth = 0;  // checked unless 0
};

template <class Driver>
class DriverTest : public ::testing::Test {
 protected:
  DriverTest() { posprint::SetLogoDirectory(logos.Path()); }
  void Configure(Keys keys) {
    auto* parameters = new ParameterCollection();
    for (const auto& key : keys) parameters->Set(key.first, key.second);
    driver.Configure(Nx_Smartp<IParameterCollection>(parameters));
  }
  // The command once, or once with each element of `xml` in turn; true when all succeeded.
  bool Command(const std::string& name, const std::string& xml = "") {
    std::string error;
    EXPECT_TRUE(parser.LoadString("<Job>" + xml + "</Job>", &error)) << error;
    const std::wstring command(name.begin(), name.end());
    IXMLDOMNodePtr node = parser.GetFirstChild(parser.Root());  // null: no element
    driver.ClearErrors();
    bool ok = true;
    do {
      ok = driver.ExecuteCommand(&parser, command.c_str(), node, port.Name()) && ok;
    } while (!(node = parser.GetNextNode(node)).IsNull());
    return ok;
  }
  bool Field(const std::string& xml) { return Command("NEWPRINT", xml); }
  int Record(const std::string& call) {  // a record operation written "Name(record)"
    using A = APrinter;
    static const std::map<std::string, int (A::*)(const char*)> slots = {
        {"PrintFormattedText", &A::PrintFormattedText},     {"PrintLogoByName", &A::PrintLogoByName},
        {"PrintBarcodeRecord", &A::PrintBarcodeRecord},     {"PrintSeparatorRecord", &A::PrintSeparatorRecord},
        {"FeedLinesRecord", &A::FeedLinesRecord},           {"CutRecord", &A::CutRecord}};
    const std::size_t open = call.find('(');
    driver.ClearErrors();
    return (driver.*slots.at(call.substr(0, open)))(call.substr(open + 1, call.size() - open - 2).c_str());
  }
  // Closes, configures and (unless `init` is false) opens; then forgets all that went on the line.
  void Open(Keys keys = {}, bool init = true) {
    Command("STOP_PRINTER");
    port.OnWrite(nullptr);
    Configure(keys);
    ASSERT_TRUE(!init || Command("INIT_PRINTER"));
    port.ClearWritten();
    port.answers_.clear();  // a fresh line
    clock = posprint::FakeClock();
  }
  // The printer's answers to its status requests, in turn: `replies` holds them split by ';'
  // (the last one repeats, an empty one is silence), each in bursts split by '|'; "00@500":
  // the burst comes 500 ms after it is first waited for.
  void Answer(const std::string& replies) {
    std::vector<std::string> answers;
    std::istringstream in(replies);
    for (std::string answer; std::getline(in, answer, ';');) answers.push_back(answer);
    auto asked = std::make_shared<std::size_t>(0);
    port.OnWrite([request = statusRequest, answers, asked](posprint::ScriptedPort& p, const std::string& sent) {
      const bool answer = sent == request && !answers.empty();
      std::istringstream bursts(answer ? answers[std::min((*asked)++, answers.size() - 1)] : "");
      for (std::string burst; std::getline(bursts, burst, '|');) {
        const std::size_t at = burst.find('@');
        p.Answer(Hex(burst.substr(0, at)), at == std::string::npos ? 0 : std::stoi(burst.substr(at + 1)));
      }
    });
  }
  std::vector<int> Errors() const { return driver.RecordedErrors(); }
  std::string Sent() const { return ToHex(port.Written()); }

  void Run(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.name);
      Open(c.keys, c.input != "INIT_PRINTER");
      if (!c.reply.empty()) Answer(c.reply);
      if (c.input.find('(') != std::string::npos) {
        EXPECT_EQ(Record(c.input), c.result);
      } else {
        EXPECT_EQ(c.input[0] == '<' ? Field(c.input) : Command(c.input), c.result == 1);
      }
      EXPECT_EQ(Errors(), c.result > 1 ? std::vector<int>{c.result} : std::vector<int>{});
      EXPECT_EQ(Sent(), c.sent);
      EXPECT_EQ(c.lineWidth ? driver.Context()->lineWidth : 0, c.lineWidth);
    }
  }

  std::string statusRequest;  // the model's status request, as bytes
  posprint::test::TempDir logos;
  posprint::FakeClock clock;
  posprint::ScopedClock scopedClock{clock};
  posprint::ScriptedPort port;
  Nx_XMLParser parser;
  Driver driver;
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
