// Shared by the ZEBRA tests: a label printer's "~HS" answers, a fixture over the command
// layer and one over the driver, both on a scripted port and the fake clock.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "drivers/label/ZEBRA/kp_zebra.h"
#include "platform/clock.h"
#include "platform/otool.h"
#include "support/bytes.h"

namespace zebra_test {

using namespace ZEBRA;
using Errors = std::vector<int>;
using Keys = std::initializer_list<std::pair<const wchar_t*, const wchar_t*>>;

// The three strings answered to "~HS", each <STX> ... <ETX><CR><LF>. The first one's flags:
// paper out at byte 5, pause 7, buffer full 18, diagnostics 20, partial format 22, corrupt
// RAM 28, under temperature 30, over temperature 32.
inline std::string Framed(const std::string& body) { return "\x02" + body + "\x03\r\n"; }
const std::string kReadyFirst = Framed("030,0,0,0560,000,0,0,0,000,0,0,0");
const std::string kSecond = Framed("000,0,0,0,1,2,6,0,00000000,1,000");
const std::string kThird = Framed("1234,0");
inline std::string Repeat(const std::string& piece, int times) {
  std::string out;
  while (times-- > 0) out += piece;
  return out;
}

// A whole answer whose first string has the given body.
inline std::vector<std::string> Answers(const std::string& first) { return {Framed(first), kSecond, kThird}; }

// The command layer on a label 10 characters wide: (163 - 3) / (13 + 3); cells of 16 dots,
// lines of 31 dots.
class Zpl : public ::testing::Test {
 protected:
  Zpl() { line.ctx.config = &state, state.labelWidth = 163, state.charsPerLine = 10; }
  std::string Sent() const { return line.port.Written(); }
  // The normal font, the cursor on the line at Y = 62, nothing sent.
  void Fresh() { zpl_FontNormal(line.ctx), line.port.ClearWritten(), state.cursorX = 0, state.cursorY = 62; }

  posprint::test::ScriptedContext line;
  ZplState state;
  posprint::FakeClock clock;
  posprint::ScopedClock scopedClock{clock};
};

class Zebra : public ::testing::Test {
 protected:
  // Keys without their "param_" prefix.
  void Configure(Keys keys) {
    auto* parameters = new ParameterCollection();
    for (const auto& key : keys) parameters->Set((std::wstring(L"param_") + key.first).c_str(), key.second);
    driver.Configure(Nx_Smartp<IParameterCollection>(parameters));
  }
  // The port opened, its set-up cleared away.
  void Open(Keys keys = {}) {
    Configure(keys);
    ASSERT_TRUE(Command(L"INIT_PRINTER"));
    port.ClearWritten();
  }
  // A label 10 characters wide (21 mm: (168 - 3) / 16).
  void OpenNarrowLabel() { Open({{L"WidthLabel", L"21"}}); }
  // Runs a command with the one element in xml, if any.
  bool Command(const wchar_t* name, const std::string& xml = "") {
    std::string error;
    EXPECT_TRUE(parser.LoadString("<Job>" + xml + "</Job>", &error)) << error;
    driver.ClearErrors();
    return driver.ExecuteCommand(&parser, name, parser.GetFirstChild(parser.Root()), port.Name());
  }
  bool Field(const std::string& xml) { return Command(L"NEWPRINT", xml); }
  std::string Sent() const { return port.Written(); }
  Errors Recorded() const { return driver.RecordedErrors(); }

  posprint::FakeClock clock;
  posprint::ScopedClock scopedClock{clock};
  posprint::ScriptedPort port;
  Nx_XMLParser parser;
  KpZEBRA driver;
};

}  // namespace zebra_test
