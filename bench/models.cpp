#include "models.h"

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

// The parameters keep the end of a ticket to what the reference job says: its own three
// line feeds and its own partial cut (the CUT element), no feeds or cuts added by the
// driver's end of print.
const std::vector<Model>& Models() {
  static const std::vector<Model> models = {
      {"TMT70", create_KpTMT70, Paper::kReceipt, L"mem:", {{"param_RollEjection", "FALSE"}}},
      {"VKP80II", create_KpVKP80II, Paper::kReceipt, L"mem:", {}},
      {"TM300", create_KpTM300, Paper::kReceipt, L"mem:", {}},
      {"TM295", create_KpTM295, Paper::kReceipt, L"mem:", {}},
      {"STB112", create_STB112Driver, Paper::kReceipt, L"mem:",
       {{"param_LinefeedEjection", "FALSE"}, {"param_CutType", "val_No"}, {"param_TypePaper", "val_Roll"}}},
      {"STB60", create_STB60Driver, Paper::kReceipt, L"mem:",
       {{"param_LinefeedEjection", "FALSE"}, {"param_CutType", "val_No"}, {"param_TypePaper", "val_Roll"}}},
      {"STB80", create_STB80Driver, Paper::kReceipt, L"mem:",
       {{"param_LinefeedEjection", "FALSE"}, {"param_CutType", "val_No"}, {"param_TypePaper", "val_Roll"}}},
      {"QSeries", create_Q1Driver, Paper::kReceipt, L"mem:", {}},
      {"ZEBRA", create_KpZEBRA, Paper::kLabel, L"mem:zpl",
       {{"param_Resolution", "8"}, {"param_WidthLabel", "100"}, {"param_LenghtLabel", "70"}}},
  };
  return models;
}

std::string BenchDirectory() { return POSPRINT_BENCH_DIR; }

}  // namespace posprint::bench
