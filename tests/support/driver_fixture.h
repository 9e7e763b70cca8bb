// A driver under test on a scripted port with a fake clock (no wait of the driver is real),
// and tables of one-line cases run against it. A printer family's fixture derives from it
// and says how its printer answers (Prepare) and what it received (Received).
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "frame/driver_base.h"
#include "platform/clock.h"
#include "platform/nx_xml.h"
#include "platform/parameters.h"
#include "platform/scripted_port.h"
#include "support/bmp_builder.h"
#include "support/bytes.h"

namespace posprint::test {

using Keys = std::initializer_list<std::pair<const wchar_t*, const wchar_t*>>;

// Times(3, "0A") -> "0A 0A 0A".
inline std::string Times(int count, const std::string& hex) {
  std::string out;
  for (int i = 0; i < count; ++i) out += (i ? " " : "") + hex;
  return out;
}
inline std::string Spaces(int count) { return Times(count, "20"); }
// A 1-bit BMP file drawn with '#' (black) and '.' (white), top row first.
inline std::string Bmp(const std::vector<std::string>& rows) {
  const std::vector<std::uint8_t> file = MonoBmp(rows);
  return std::string(file.begin(), file.end());
}

// One row: a fresh printer configured with `keys` and opened (unless `input` starts with
// INIT_PRINTER), the printer's answers `reply` (as the family's fixture reads them), then
// `input`: NEWPRINT with each field when it starts with '<', a record operation such as
// "CutRecord(CUT_FULL)", or commands separated by blanks.
struct Case {
  const char* name;
  Keys keys;
  std::string reply, input;
  int result;         // 1: success; else failure with this error recorded (0: none); or a record's result
  std::string bytes;  // hex: what the printer received after the open
  int lineWidth = 0;  // checked unless 0
};

template <class Driver>
class DriverFixture : public ::testing::Test {
 protected:
  virtual void FreshPrinter() = 0;                      // before each open
  virtual void Prepare(const std::string& reply) = 0;   // a row's answers, after the open
  virtual std::string Received() const = 0;             // hex: what the printer received

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
  std::vector<int> Errors() const { return driver.RecordedErrors(); }
  std::string Line() const { return ToHex(port.Written()); }  // as it went on the wire

  // Closes, configures and (unless `init` is false) opens a fresh printer; then forgets
  // all that went on the line and the time waited.
  void Open(Keys keys = {}, bool init = true) {
    Command("STOP_PRINTER");
    FreshPrinter();
    Configure(keys);
    ASSERT_TRUE(!init || Command("INIT_PRINTER"));
    port.ClearWritten();
    port.answers_.clear();
    clock = FakeClock();
    Prepare("");
  }

  void Run(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.name);
      Open(c.keys, c.input.rfind("INIT_PRINTER", 0) != 0);
      Prepare(c.reply);
      if (c.input.find('(') != std::string::npos) {
        EXPECT_EQ(Record(c.input), c.result);
      } else if (c.input[0] == '<') {
        EXPECT_EQ(Field(c.input), c.result == 1);
      } else {
        std::istringstream commands(c.input);
        bool ok = true;
        for (std::string command; commands >> command;) ok = Command(command) && ok;
        EXPECT_EQ(ok, c.result == 1);
      }
      EXPECT_EQ(Errors(), c.result > 1 ? std::vector<int>{c.result} : std::vector<int>{});
      EXPECT_EQ(Received(), c.bytes);
      EXPECT_EQ(c.lineWidth ? driver.Context()->lineWidth : 0, c.lineWidth);
    }
  }

  FakeClock clock;
  ScopedClock scopedClock{clock};
  ScriptedPort port;
  Nx_XMLParser parser;
  Driver driver;
};

}  // namespace posprint::test
