#include "support/model_printers.h"

#include <cstring>

namespace posprint::test {
namespace {

// ESC/POS real-time status bytes always carry bits 1 and 4: 0x12 is "all well".
const std::string kReadyByte = "\x12";

// The three "~HS" strings of an idle Zebra: <STX> fields <ETX><CR><LF>; the first two
// 36 bytes, the third 10.
const std::string kHsFirst = std::string("\x02") + "030,0,0,0245,000,0,0,0,000,0,0,0" + "\x03\r\n";
const std::string kHsSecond = std::string("\x02") + "001,0,0,0,1,2,6,0,00000000,1,000" + "\x03\r\n";
const std::string kHsThird = std::string("\x02") + "1234,0" + "\x03\r\n";

// A six-byte real-time status of the presenter and ticket printers: 10 0F, four bytes.
const std::string kSixByteReady = std::string("\x10\x0F\x00\x00\x00\x00", 6);
// The plain one-byte answer to ESC v: no sensor set.
const std::string kNoSensorByte = std::string("\x00", 1);

const std::vector<ModelPrinter>& Printers() {
  static const std::vector<ModelPrinter> printers = {
      {"create_KpITALORA", {}, {{"?90\r", {"!90&0&0&0&0&0\r"}}}},  // status question, answer line
      {"create_KpLX300", {}, {}},                                  // never answers
      {"create_KpPLUS",
       {{L"param_CutType", L"val_Partial"}},
       {{"\x10\x04\x02", {kReadyByte}}, {"\x10\x04\x04", {kReadyByte}}}},
      {"create_Q1Driver",
       {{L"param_LinefeedEjection", L"TRUE"}},
       {{"\x1D\x49\x31", {"\x01"}},  // GS I 1: printer identification
        {"\x10\x04\x02", {kReadyByte}},
        {"\x10\x04\x14", {kSixByteReady}}}},
      {"create_STB112Driver",
       {{L"param_LinefeedEjection", L"TRUE"}, {L"param_CutType", L"val_Partial"}},
       {{"\x10\x04\x02", {kReadyByte}}, {"\x10\x04\x11", {kReadyByte}}}},
      {"create_STB60Driver", {}, {{"\x1B\x76", {kReadyByte}}}},
      {"create_STB80Driver",
       {{L"param_LinefeedEjection", L"TRUE"}, {L"param_CutType", L"val_Partial"}},
       {{"\x10\x04\x02", {kReadyByte}}, {"\x10\x04\x14", {kSixByteReady}}}},
      {"create_KpTM295", {}, {{"\x1B\x76", {kNoSensorByte}}}},
      {"create_KpTM300", {{L"param_CutType", L"val_Partial"}}, {{"\x1B\x76", {kNoSensorByte}}}},
      {"create_KpVKP80II", {{L"param_CutType", L"val_Full"}}, {{"\x10\x04\x14", {kSixByteReady}}}},
      {"create_KpTMT70",
       {{L"param_CutType", L"val_Partial"}},
       {{"\x10\x04\x02", {kReadyByte}},     // DLE EOT 2: online
        {"\x10\x04\x04", {kReadyByte}}}},  // DLE EOT 4: paper present
      {"create_KpZEBRA",
       {{L"param_WidthLabel", L"60"}, {L"param_LenghtLabel", L"40"}},
       {{"~HS", {kHsFirst, kHsSecond, kHsThird}}}},
  };
  return printers;
}

bool EndsWith(const std::string& text, const std::string& suffix) {
  return text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

}  // namespace

const ModelPrinter* FindModelPrinter(const char* factory) {
  for (const ModelPrinter& printer : Printers())
    if (std::strcmp(printer.factory, factory) == 0) return &printer;
  return nullptr;
}

std::string Scrambled(std::string bytes, unsigned char key) {
  for (char& c : bytes) c = static_cast<char>(c ^ key);
  return bytes;
}

std::vector<std::string> AnswersTo(const std::vector<PrinterRule>& rules, const std::string& line) {
  for (const PrinterRule& rule : rules) {
    if (EndsWith(line, rule.request)) return rule.answers;
    if (EndsWith(line, Scrambled(rule.request))) {
      std::vector<std::string> answers;
      for (const std::string& answer : rule.answers) answers.push_back(Scrambled(answer));
      return answers;
    }
  }
  return {};
}

void PlayPrinter(ScriptedPort& port, const std::vector<PrinterRule>& rules, int delayMs,
                 std::string (*transform)(const std::string&)) {
  port.OnWrite([rules, delayMs, transform](ScriptedPort& self, const std::string&) {
    for (const std::string& answer : AnswersTo(rules, self.Written()))
      self.Answer(transform ? transform(answer) : answer, delayMs);
  });
}

const std::vector<JobCommand>& SampleTicket() {
  static const std::vector<JobCommand> ticket = {
      {"INIT_PRINTER", ""},
      {"CHECK", ""},
      {"START_PRINT", ""},
      {"NEWPRINT", std::string("<LOGO FileName=\"") + kSampleLogoName + "\"/>"},
      {"NEWPRINT", "<SINGLEFIELD Justify=\"CENTER\"><Field>CAFE ROMA</Field></SINGLEFIELD>"},
      {"NEWPRINT", "<DOUBLEFIELD><LeftField>Espresso</LeftField><RightField>1.20</RightField></DOUBLEFIELD>"},
      {"NEWPRINT", "<LINE Char=\"=\"/>"},
      {"NEWPRINT", "<BARCODE Type=\"ITF2OF5\">12345678</BARCODE>"},
      {"NEWPRINT", "<LINEFEED Value=\"2\"/>"},
      {"NEWPRINT", "<CUT/>"},
      {"STOP_PRINT", ""},
      {"STOP_PRINTER", ""},
  };
  return ticket;
}

std::vector<unsigned char> SampleLogo() {
  // 16 x 2 dots, stored bottom row first, rows padded to 4 bytes, 0 bits black.
  std::vector<unsigned char> file(62 + 2 * 4, 0);
  auto put32 = [&file](std::size_t at, unsigned value) {
    for (int i = 0; i < 4; ++i) file[at + i] = static_cast<unsigned char>(value >> (8 * i));
  };
  file[0] = 'B';
  file[1] = 'M';
  put32(2, static_cast<unsigned>(file.size()));
  put32(10, 62);  // pixel data
  put32(14, 40);  // BITMAPINFOHEADER
  put32(18, 16);  // width
  put32(22, 2);   // height
  file[26] = 1;   // planes
  file[28] = 1;   // bits per pixel
  put32(34, 8);   // image size
  put32(46, 2);   // palette entries
  put32(58, 0x00FFFFFF);
  // Bottom row: white left half; top row: white right half.
  file[62] = 0xFF;
  file[66 + 1] = 0xFF;
  return file;
}

std::string CommandLabel(const JobCommand& command) {
  if (command.element.empty()) return command.name;
  const std::size_t end = command.element.find_first_of(" />", 1);
  return command.name + " " + command.element.substr(1, end - 1);
}

}  // namespace posprint::test
