#include "models.h"

#include "mem_port.h"

extern "C" {
// Weak: a driver that is not in this tree yet leaves its factory null.
APrinter* create_KpTMT70() __attribute__((weak));
APrinter* create_KpVKP80II() __attribute__((weak));
APrinter* create_KpTM300() __attribute__((weak));
APrinter* create_KpTM295() __attribute__((weak));
APrinter* create_STB112Driver() __attribute__((weak));
APrinter* create_STB60Driver() __attribute__((weak));
APrinter* create_STB80Driver() __attribute__((weak));
APrinter* create_Q1Driver() __attribute__((weak));
APrinter* create_KpZEBRA() __attribute__((weak));
}

namespace posprint::bench {

namespace {

using namespace std::string_literals;

// The status answers of ready printers, per protocol.
const PrinterAnswers kEscPosStatus = {{{"\x10\x04\x02"s, "\x00"s}, {"\x10\x04\x04"s, "\x00"s}}};
const PrinterAnswers kPaperSensor = {{{"\x1B\x76"s, "\x00"s}}};  // ESC v
const PrinterAnswers kStb112Status = {{{"\x10\x04\x02"s, "\x00"s}, {"\x10\x04\x11"s, "\x00"s}}};
// The STB80 runs its line scrambled with key 203 (0xCB), whatever it is told.
const PrinterAnswers kStbExtendedStatus = {{{"\x10\x04\x02"s, "\x00"s}, {"\x10\x04\x14"s, std::string(6, '\0')},
                                            {"\x1D\x49\x31"s, "\xFF"s}},  // GS I 1: a plain-line Q1
                                           0xCB};
const PrinterAnswers kVkpFullStatus = {{{"\x10\x04\x14"s, "\x10\x0F\x00\x00\x00\x00"s}}};  // DLE EOT 20
const PrinterAnswers kZplHostStatus = {{
    {"~HS",
     "\x02" "030,0,0,0560,000,0,0,0,000,0,0,0" "\x03\r\n"    // paper, pause, buffer, temperatures
     "\x02" "000,0,0,0,0,2,4,0,00000000,1,000" "\x03\r\n"    // settings, memory
     "\x02" "1234,0" "\x03\r\n"}}};                          // password, static RAM

Model Row(std::string name, Factory factory, Paper paper, Parameters parameters, PrinterAnswers answers) {
  Model model{name, factory, paper, std::move(parameters), std::move(answers), {}};
  model.memoryPort = L"mem:" + std::wstring(name.begin(), name.end());
  return model;
}

// No feeds or cut added by the driver's end of print where a key turns them off: the
// reference receipt ends with its own three line feeds and its own cut (the CUT element).
const Parameters kNoEjection = {{"param_LinefeedEjection", "FALSE"}, {"param_CutType", "val_No"}};

}  // namespace

const std::vector<Model>& Models() {
  static const std::vector<Model> models = [] {
    std::vector<Model> rows = {
        Row("TMT70", create_KpTMT70, Paper::kReceipt, {{"param_RollEjection", "FALSE"}}, kEscPosStatus),
        Row("VKP80II", create_KpVKP80II, Paper::kReceipt, {}, kVkpFullStatus),
        Row("TM300", create_KpTM300, Paper::kReceipt, {{"param_RollEjection", "FALSE"}}, kPaperSensor),
        Row("TM295", create_KpTM295, Paper::kReceipt, {}, kPaperSensor),
        Row("STB112", create_STB112Driver, Paper::kReceipt, kNoEjection, kStb112Status),
        Row("STB60", create_STB60Driver, Paper::kReceipt, kNoEjection, kPaperSensor),
        Row("STB80", create_STB80Driver, Paper::kReceipt, kNoEjection, kStbExtendedStatus),
        Row("QSeries", create_Q1Driver, Paper::kReceipt, kNoEjection, kStbExtendedStatus),
        Row("ZEBRA", create_KpZEBRA, Paper::kLabel,
            {{"param_Resolution", "8"}, {"param_WidthLabel", "100"}, {"param_LenghtLabel", "70"}}, kZplHostStatus),
    };
    return rows;
  }();
  static const bool registered = [] {
    for (const Model& model : models) SetMemoryPrinterAnswers(model.name, &model.answers);
    return true;
  }();
  (void)registered;
  return models;
}

std::string BenchDirectory() { return POSPRINT_BENCH_DIR; }

}  // namespace posprint::bench
