// The ticket printers' test fixture: a driver on a scripted port, a logo folder, and a
// scripted printer that keeps its own port mode (plain or scrambled) and answers the
// family's status and identification requests the way a real one does.
#pragma once

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "platform/logo_files.h"
#include "support/driver_fixture.h"
#include "support/run_program.h"

namespace ticket_test {

using namespace posprint::test;

constexpr std::uint8_t kKey = 0xCB;  // the scrambling key the family asks for with 1B F9 CB

// The bytes as the printer reads them after undoing the scrambling of `key`.
inline std::string Descramble(std::string line, std::uint8_t key) {
  for (char& c : line) c = static_cast<char>(c ^ key);
  return line;
}

// A printer on a scripted port. It reads each write in its own mode (key 0: plain); a
// request it cannot read in that mode goes unanswered, as on the real printer.
class TicketPrinter {
 public:
  explicit TicketPrinter(posprint::ScriptedPort& port) {
    port.OnWrite([this](posprint::ScriptedPort& p, const std::string& line) { Receive(p, line); });
  }
  // Switched on in mode `mode`, answering that all is well.
  void Ready(std::uint8_t mode) {
    key = mode;
    silent = false;
    status = paper = std::string(1, '\0');
    extended = std::string(6, '\0');
    settingAnswer = std::string(1, '\0');
  }

  std::uint8_t key = 0;         // the printer's port mode
  bool silent = false;          // answers nothing at all
  std::string status;           // to DLE EOT 2 and ESC v (empty: no answer)
  std::string paper;            // to DLE EOT 0x11 (STB112)
  std::string extended;         // to DLE EOT 0x14 (STB80, Q1)
  std::string identity;         // to GS I 1 (Q1); one that knows the scrambled mode then takes it up
  std::string settingAnswer;    // confirmation of the sheet setting (STB112)
  std::string received;         // every byte as the printer read it

 private:
  void Receive(posprint::ScriptedPort& port, const std::string& line) {
    const std::string plain = Descramble(line, key);
    received += plain;
    if (silent) return;
    if (plain == Hex("1B F9 CB")) key = kKey;
    if (plain == Hex("10 04 02") || plain == Hex("1B 76")) Say(port, status);
    if (plain == Hex("10 04 11")) Say(port, paper);
    if (plain == Hex("10 04 14")) Say(port, extended);
    if (plain == Hex("1D FF 0A 32 09 01 62")) Say(port, settingAnswer);
    if (plain == Hex("1D 49 31")) {
      Say(port, identity);
      if (!identity.empty() && identity != "\xFF") key = kKey;
    }
  }
  void Say(posprint::ScriptedPort& port, const std::string& answer) {
    if (!answer.empty()) port.Answer(Descramble(answer, key));
  }
};

// A row's `reply`: "" all is well; else the status answer and the following one (DLE EOT
// 0x11 or 0x14) split by ';', each in hex or "-" for none.
template <class Driver>
class TicketTest : public DriverFixture<Driver> {
 protected:
  TicketTest() {
    posprint::SetLogoDirectory(logos.Path());
    logos.Write("small.bmp", Bmp({"########....", "....#......#"}));  // 12 x 2: the padding must not print
    logos.Write("w400.bmp", Bmp({std::string(400, '.')}));
    logos.Write("w700.bmp", Bmp({std::string(700, '.')}));
    logos.Write("band.bmp", Bmp({"########", "........"}));
    logos.Write("text.bmp", "not a picture");
    logos.Write("colour.bmp", Bmp({"........"}).replace(28, 1, 1, 24));  // 24 bits a pixel
  }
  void FreshPrinter() override { printer.Ready(startKey); }
  void Prepare(const std::string& reply) override {
    printer.received.clear();
    std::istringstream answers(reply);
    std::string status, next;
    if (std::getline(answers, status, ';')) printer.status = status == "-" ? "" : Hex(status);
    if (std::getline(answers, next, ';')) printer.paper = printer.extended = next == "-" ? "" : Hex(next);
  }
  std::string Received() const override { return ToHex(printer.received); }

  std::uint8_t startKey = 0;  // the printer's mode when it is switched on
  TicketPrinter printer{this->port};
  TempDir logos;
};

}  // namespace ticket_test
