// Test fixture for the ticket printers: one driver on a scripted port, a fake clock, and a
// scripted printer that keeps its own port mode (plain or scrambled) and answers the
// family's status and identification requests the way a real one does.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/nx_xml.h"
#include "platform/parameters.h"
#include "platform/scripted_port.h"
#include "support/bytes.h"

namespace ticket_test {

using posprint::test::Hex;
using posprint::test::ToHex;
using Keys = std::initializer_list<std::pair<const wchar_t*, const wchar_t*>>;

// The bytes as the printer reads them after undoing the scrambling of `key`.
inline std::string Descramble(const std::string& line, std::uint8_t key) {
  std::string plain = line;
  for (char& c : plain) c = static_cast<char>(c ^ key);
  return plain;
}

// A printer on a scripted port. It reads each write in its own mode (key 0: plain);
// a request it cannot read in that mode goes unanswered, as on the real printer.
class TicketPrinter {
 public:
  explicit TicketPrinter(posprint::ScriptedPort& port) {
    port.OnWrite([this](posprint::ScriptedPort& p, const std::string& line) { Receive(p, line); });
  }

  std::uint8_t key = 0;        // the printer's port mode
  bool silent = false;         // answers nothing at all
  std::string status = std::string(1, '\0');  // answer to DLE EOT 2 (empty: none)
  std::string paper = std::string(1, '\0');   // answer to DLE EOT 0x11 (STB112)
  std::string extended = std::string(6, '\0');  // answer to DLE EOT 0x14 (STB80, Q1)
  std::string identity;         // answer to GS I 1 (Q1); empty: none
  std::string settingAnswer = std::string(1, '\0');  // confirmation of an answered setting frame
  std::string received;         // every byte as the printer read it

 private:
  void Receive(posprint::ScriptedPort& port, const std::string& line) {
    const std::string plain = Descramble(line, key);
    received += plain;
    if (silent) return;
    if (plain == Hex("1B F9 CB")) {
      key = 0xCB;
    } else if (plain == Hex("10 04 02")) {
      Say(port, status);
    } else if (plain == Hex("10 04 11")) {
      Say(port, paper);
    } else if (plain == Hex("10 04 14")) {
      Say(port, extended);
    } else if (plain == Hex("1D 49 31")) {
      Say(port, identity);
    } else if (plain.size() == 7 && plain.compare(0, 4, Hex("1D FF 0A 32")) == 0 &&
               (plain[4] == 0x09 && plain[5] == 0x01)) {
      Say(port, settingAnswer);  // the printer confirms the sheet setting
    }
  }
  void Say(posprint::ScriptedPort& port, const std::string& answer) {
    if (!answer.empty()) port.Answer(Descramble(answer, key));
  }
};

template <class Driver>
class TicketTest : public ::testing::Test {
 protected:
  void Configure(Keys pairs) {
    auto* parameters = new ParameterCollection();
    for (const auto& pair : pairs) parameters->Set(pair.first, pair.second);
    driver.Configure(Nx_Smartp<IParameterCollection>(parameters));
  }
  bool Command(const wchar_t* name) {
    driver.ClearErrors();
    return driver.ExecuteCommand(&parser, name, IXMLDOMNodePtr(), port.Name());
  }
  // Opens, then forgets what the open sent.
  void Open(Keys pairs = {}) {
    Configure(pairs);
    ASSERT_TRUE(Command(L"INIT_PRINTER"));
    Clear();
  }
  void Clear() {
    port.ClearWritten();
    printer.received.clear();
  }
  // NEWPRINT with the one element in xml.
  bool Field(const std::string& xml) {
    std::string error;
    EXPECT_TRUE(parser.LoadString("<Job>" + xml + "</Job>", &error)) << error;
    driver.ClearErrors();
    return driver.ExecuteCommand(&parser, L"NEWPRINT", parser.GetFirstChild(parser.Root()), port.Name());
  }
  std::vector<int> Errors() const { return driver.RecordedErrors(); }
  // What went on the line, and what the printer read from it.
  std::string Line() const { return ToHex(port.Written()); }
  std::string Read() const { return ToHex(printer.received); }

  posprint::FakeClock clock;
  posprint::ScopedClock scopedClock{clock};
  posprint::ScriptedPort port;
  TicketPrinter printer{port};
  Nx_XMLParser parser;
  Driver driver;
};

}  // namespace ticket_test
