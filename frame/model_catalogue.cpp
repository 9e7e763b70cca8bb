#include "frame/model_catalogue.h"

#include <cstring>

namespace {

using Values = std::vector<CatalogueValue>;

constexpr bool kKeeps = true;    // the value leaves the configuration as the default
constexpr bool kChanges = false;
constexpr bool kEmptyIsAValue = true;  // CatalogueModel::emptyIsOtherValue

// A key that only knows words.
CatalogueKey Words(const char* key, WordCase wordCase, const char* defaultText, Values words,
                   const char* otherwise = "keeps the default", bool otherwiseKeeps = kKeeps) {
  return {key, wordCase, defaultText, std::move(words), nullptr, nullptr, {}, otherwise, otherwiseKeeps};
}

// A key that takes a number (and perhaps a few words besides).
CatalogueKey Number(const char* key, const char* defaultText, const char* numbers, const char* numberEffect,
                    Values examples, const char* otherwise = "keeps the default", bool otherwiseKeeps = kKeeps,
                    Values words = {}) {
  return {key,          WordCase::kAny, defaultText, std::move(words), numbers, numberEffect,
          std::move(examples), otherwise, otherwiseKeeps};
}

// "FALSE" switches off what is on by default, on the receipt printers.
CatalogueKey FalseSwitchesOff(const char* key, const char* defaultText, const char* whenFalse) {
  return Words(key, WordCase::kAny, defaultText, {{"FALSE", whenFalse, kChanges}});
}

// --- receipt and slip printers ---

CatalogueModel Tmt70() {
  return {"create_KpTMT70",
          "thermal receipt printer, 80 mm roll, ESC/POS",
          "tmt70.md",
          {
              FalseSwitchesOff("param_RollEjection", "8 line feeds at the end of a receipt", "no line feeds"),
              FalseSwitchesOff("param_NearlyEndPaperSensor", "paper near end reported (102)", "paper near end ignored"),
              FalseSwitchesOff("param_EndPaperSensor", "paper end reported (102)", "paper end ignored"),
              Words("param_CutType", WordCase::kExact, "no cut at the end of a receipt",
                    {{"val_Partial", "partial cut (1D 56 01) after the line feeds", kChanges}}),
          },
          {{100, "ready"},
           {101, "the printer does not answer"},
           {102, "paper out, or nearly out"},
           {105, "cover open"},
           {108, "printer error (cutter jam, head temperature)"}}};
}

CatalogueModel Vkp80ii() {
  return {"create_KpVKP80II",
          "thermal receipt printer with cutter and ticket presenter, ESC/POS",
          "receipt-printers.md",
          {
              FalseSwitchesOff("param_LinefeedEjection", "7 line feeds before the ticket is presented",
                               "no line feeds (unless param_CutType is val_Full)"),
              FalseSwitchesOff("param_NearlyEndPaper", "paper near end reported (113)", "not reported"),
              FalseSwitchesOff("param_EndPaper", "paper end reported (112)", "not reported"),
              Words("param_CutType", WordCase::kExact, "no cut when the ticket is presented",
                    {{"val_Full", "full cut (1B 69) before the presenter, and 7 line feeds even when "
                                  "param_LinefeedEjection is FALSE",
                      kChanges}}),
          },
          {{100, "ready"},
           {101, "no answer, a malformed answer, or a paper jam"},
           {104, "busy with received data"},
           {110, "print head too hot"},
           {111, "print head lifted or cover open"},
           {112, "paper out"},
           {113, "paper near its end"},
           {116, "the last ticket is still in the presenter"}}};
}

CatalogueModel Tm300() {
  return {"create_KpTM300",
          "roll receipt printer with paper sensors and cutter, ESC/POS",
          "receipt-printers.md",
          {
              FalseSwitchesOff("param_RollEjection", "9 line feeds at the end of a ticket", "no line feeds"),
              FalseSwitchesOff("param_NearlyEndPaperSensor", "paper near end (status bit 0) reported as 102",
                               "bit 0 ignored"),
              FalseSwitchesOff("param_EndPaperSensor", "paper out (status bit 2) reported as 102", "bit 2 ignored"),
              Words("param_CutType", WordCase::kExact, "no cut at the end of a ticket",
                    {{"val_Partial", "partial cut (1B 6D) after the line feeds", kChanges},
                     {"val_Full", "full cut (1B 69) after the line feeds", kChanges}}),
          },
          {{100, "ready"}, {101, "no answer (also after the six retries at the end of a ticket)"},
           {102, "paper near its end, or paper out"}}};
}

CatalogueModel Tm295() {
  return {"create_KpTM295",
          "slip printer (one inserted sheet at a time), ESC/POS",
          "receipt-printers.md",
          {
              FalseSwitchesOff("param_TicketBlock", "the slip stays clamped at the end of a ticket",
                               "the slip is released at the end (0A 1B 71)"),
              FalseSwitchesOff("param_TicketEjection", "the slip is ejected at the end (1B 46 31, 0C)",
                               "not ejected: fed param_LineFeed lines (1B 64 n) instead"),
              Number("param_LineFeed", "2 lines", "a whole number, 0 or more",
                     "lines fed at the end of a slip that is not ejected",
                     {{"0", "no lines", kChanges}, {"5", "5 lines", kChanges}, {"2", "2 lines", kKeeps},
                      {"-1", "negative: keeps the default", kKeeps}},
                     "read by its leading digits: a word counts as 0, an empty value keeps the default", kChanges),
              Number("param_LinefeedExit", "12", "a whole number, 0 or more",
                     "kept in the configuration; no command sends it",
                     {{"0", "0", kChanges}, {"20", "20", kChanges}, {"12", "12", kKeeps},
                      {"-3", "negative: keeps the default", kKeeps}},
                     "read by its leading digits: a word counts as 0, an empty value keeps the default", kChanges),
              Number("param_BarcodeHeight", "3 bands", "a whole number 1 to 255",
                     "times each 8-dot barcode band is printed (bar height 8 x n dots)",
                     {{"6", "48 dots", kChanges}, {"255", "the tallest", kChanges}, {"0", "keeps the default", kKeeps},
                      {"256", "keeps the default", kKeeps}}),
              Number("param_BarcodeWidth", "2 columns", "a whole number 1 to 255",
                     "narrow bar width in bit-image columns",
                     {{"1", "1 column", kChanges}, {"3", "3 columns", kChanges}, {"0", "keeps the default", kKeeps},
                      {"300", "keeps the default", kKeeps}}),
          },
          {{100, "ready"},
           {101, "no answer"},
           {102, "no slip under the print head"},
           {103, "the slip is not at its print position"}}};
}

CatalogueModel Plus() {
  return {"create_KpPLUS",
          "thermal receipt printer, 80 or 58 mm roll, autocutter, lines end in CR",
          "plus.md",
          {
              Number("param_RollEjection", "5 lines", "a whole number 0 to 20",
                     "lines fed (1B 64 n) at the end of a receipt, before the cut",
                     {{"0", "no lines", kChanges}, {"20", "20 lines", kChanges}, {"5", "5 lines", kKeeps},
                      {"21", "keeps the default", kKeeps}, {"-1", "keeps the default", kKeeps},
                      {"2.5", "keeps the default", kKeeps}},
                     "keeps the default", kKeeps, {{"FALSE", "no lines fed", kChanges}}),
              Words("param_CutType", WordCase::kAny, "partial cut at the end of a receipt",
                    {{"val_Partial", "partial cut (1D 56 01)", kKeeps},
                     {"val_Full", "full cut (1D 56 00)", kChanges},
                     {"val_None", "no cut", kChanges},
                     {"FALSE", "no cut", kChanges}}),
              FalseSwitchesOff("param_NearlyEndPaperSensor", "paper near end reported (113)", "ignored"),
              FalseSwitchesOff("param_EndPaperSensor", "paper end reported (102)", "ignored"),
              Words("param_PaperWidth", WordCase::kAny, "80 mm roll: 48 characters (font B 64)",
                    {{"val_58mm", "58 mm roll: 32 characters (font B 42)", kChanges}}),
              Words("param_CodeTable", WordCase::kAny, "PC437",
                    {{"val_PC858", "PC858, with the euro sign (1B 74 13)", kChanges}}),
          },
          {{100, "ready"},
           {101, "the printer does not answer, or answers garbage"},
           {102, "paper out"},
           {105, "cover open"},
           {108, "printer error (cutter, head temperature)"},
           {113, "paper nearly out"}}};
}

CatalogueModel Lx300() {
  return {"create_KpLX300",
          "9-pin dot-matrix document printer, ESC/P, no cutter",
          "lx300.md",
          {
              Words("param_PrintQuality", WordCase::kAny, "draft (1B 78 00)",
                    {{"val_Draft", "draft", kKeeps}, {"val_NLQ", "near letter quality (1B 78 01)", kChanges}}),
              FalseSwitchesOff("param_FormFeed", "a form feed (0C) at the end of a receipt",
                               "no form feed: the next receipt continues on the same page"),
              Number("param_PageLength", "the printer's own", "a whole number 1 to 127",
                     "page length in lines of 1/6 inch (1B 43 n at the open)",
                     {{"66", "11-inch forms", kChanges}, {"1", "1 line", kChanges}, {"127", "127 lines", kChanges},
                      {"0", "keeps the default", kKeeps}, {"128", "keeps the default", kKeeps}}),
              Number("param_Columns", "80", "a whole number 20 to 136", "characters per line at 10 cpi",
                     {{"136", "wide carriage", kChanges}, {"20", "20 columns", kChanges}, {"80", "80", kKeeps},
                      {"19", "keeps the default", kKeeps}, {"137", "keeps the default", kKeeps}}),
              Words("param_LogoDensity", WordCase::kAny, "72 dots an inch (square pixels)",
                    {{"val_60", "60 dots an inch (ESC * mode 0)", kChanges},
                     {"val_72", "72 dots an inch (ESC * mode 5)", kKeeps},
                     {"val_120", "120 dots an inch (ESC * mode 1)", kChanges}}),
              FalseSwitchesOff("param_XonXoff", "XON/XOFF switched on at the port",
                               "the port's flow control left as it is"),
          },
          {{100, "the port is usable (the printer itself never answers)"},
           {101, "the port is gone (adapter unplugged, device removed)"}}};
}

// --- ticket printers: a key that is sent, even empty, is compared; only an absent key
// keeps its default ---

CatalogueModel Stb112() {
  return {"create_STB112Driver",
          "thermal ticket printer: roll, ticket or label paper, scrambled port mode",
          "ticket-printers.md",
          {
              Words("param_Cripted", WordCase::kAny, "plain port",
                    {{"TRUE", "scrambled port from INIT_PRINTER on", kChanges}}, "plain port", kKeeps),
              Words("param_LinefeedEjection", WordCase::kAny, "8 line feeds before the cut of a roll ticket",
                    {{"TRUE", "8 line feeds", kKeeps}}, "no line feeds", kChanges),
              Words("param_CutType", WordCase::kExact, "no automatic cut",
                    {{"val_No", "no automatic cut", kKeeps}, {"val_Partial", "partial cut (1B 6D)", kChanges}},
                    "full cut (1B 69)", kChanges),
              Words("param_TypePaper", WordCase::kExact, "roll",
                    {{"val_Roll", "roll", kKeeps},
                     {"val_Ticket", "ticket paper: 30 characters a line from column 12", kChanges},
                     {"val_Label", "labels", kChanges}},
                    "keeps the default"),
              Number("param_LinefeedExit", "12", "a whole number",
                     "kept in the configuration for the host; the printer is not sent it",
                     {{"12", "12", kKeeps}, {"0", "0", kChanges}, {"30", "30", kChanges}},
                     "read by its leading digits: a word or an empty value counts as 0", kChanges),
              Words("param_WidthRow", WordCase::kExact, "full width, 42 characters",
                    {{"80 mm", "80 mm paper, 32 characters (exactly so, with the blank)", kChanges}},
                    "full width", kKeeps),
              Number("param_Density", "4", "a whole number",
                     "print density frame (1D FF 0A 32 0F d s); only the low byte is sent (260 prints as 4)",
                     {{"4", "4", kKeeps}, {"0", "0", kChanges}, {"7", "7", kChanges}, {"260", "sent as 4", kChanges}},
                     "read by its leading digits: a word or an empty value counts as 0", kChanges),
          },
          {{100, "ready"},
           {101, "no answer, or the answer did not come whole"},
           {102, "paper out"},
           {104, "paper low"},
           {105, "cover open"}},
          kEmptyIsAValue};
}

CatalogueModel Stb60() {
  return {"create_STB60Driver",
          "narrow thermal ticket printer: roll or label paper, density, label sensor",
          "ticket-printers.md",
          {
              Words("param_TypePaper", WordCase::kExact, "roll (32 characters)",
                    {{"val_Label", "labels (31 characters)", kChanges}}, "roll (there is no ticket paper)", kKeeps),
              Words("param_Density", WordCase::kExact, "normal (2)",
                    {{"val_VeryLight", "0", kChanges},
                     {"val_Light", "1", kChanges},
                     {"val_Dark", "3", kChanges},
                     {"val_VeryDark", "4", kChanges}},
                    "normal (2)", kKeeps),
              Words("param_LinefeedEjection", WordCase::kAny, "10 line feeds at the end of a roll ticket",
                    {{"FALSE", "no line feeds", kChanges}}, "10 line feeds", kKeeps),
              Words("param_Sensor", WordCase::kExact, "the printer's label sensor (1D F8 at the end of a label)",
                    {{"val_Software", "the software sensor (1D F4 at the start, 1D F5 at the end)", kChanges},
                     {"val_No", "no sensor (1D F6 at the end)", kChanges}},
                    "the printer's sensor", kKeeps),
          },
          {{100, "ready"}, {101, "no answer"}, {102, "paper out"}},
          kEmptyIsAValue};
}

CatalogueKey TicketFeeds() {
  return Words("param_LinefeedEjection", WordCase::kAny, "8 line feeds at the end of a ticket",
               {{"TRUE", "8 line feeds", kKeeps}}, "no line feeds", kChanges);
}

const std::vector<CatalogueStatus>& TicketStatuses() {
  static const std::vector<CatalogueStatus> statuses = {
      {100, "ready"},
      {101, "no answer, or the answer did not come whole"},
      {102, "paper out"},
      {104, "paper near its end"},
      {105, "cover open"}};
  return statuses;
}

CatalogueModel Stb80() {
  return {"create_STB80Driver",
          "80 mm thermal ticket printer, always on the scrambled port mode",
          "ticket-printers.md",
          {
              TicketFeeds(),
              Words("param_CutType", WordCase::kExact, "no automatic cut",
                    {{"val_No", "no automatic cut", kKeeps}, {"val_Partial", "partial cut (1B 6D)", kChanges}},
                    "full cut (1B 69)", kChanges),
          },
          TicketStatuses(),
          kEmptyIsAValue};
}

CatalogueModel Q1() {
  return {"create_Q1Driver",
          "Q-series (Q1) ticket printer; scrambled port mode unless the printer refuses it",
          "ticket-printers.md",
          {
              TicketFeeds(),
              Words("param_CutType", WordCase::kExact, "no automatic cut", {{"val_No", "no automatic cut", kKeeps}},
                    "full cut (1B 69); there is no partial cut, val_Partial included", kChanges),
          },
          TicketStatuses(),
          kEmptyIsAValue};
}

// --- label printers ---

CatalogueModel Zebra() {
  const char* mm = "whole millimetres above 0 (2.5 counts as 2)";
  return {"create_KpZEBRA",
          "label printer, ZPL II",
          "zebra.md",
          {
              Words("param_PrintFoilType", WordCase::kAny, "direct thermal (^MTD)",
                    {{"TRUE", "thermal transfer with a ribbon (^MTT)", kChanges}}),
              Words("param_Peel_Tear", WordCase::kAny, "tear-off (^MMT)", {{"PEEL_OFF", "peel-off (^MMP)", kChanges}}),
              Words("param_Resolution", WordCase::kAny, "8 dots per mm (203 dpi)",
                    {{"6", "6 dots per mm (152 dpi)", kChanges},
                     {"12", "12 dots per mm (300 dpi)", kChanges},
                     {"24", "24 dots per mm (600 dpi)", kChanges}},
                    "8 dots per mm, 8 and 300 included", kKeeps),
              Number("param_WidthLabel", "100 mm", mm, "print width (^PW), at least 2 dots, no upper limit",
                     {{"50", "400 dots", kChanges}, {"100", "800 dots", kKeeps}, {"0", "keeps the default", kKeeps},
                      {"-5", "keeps the default", kKeeps}}),
              Number("param_LenghtLabel", "70 mm", mm, "label length (^LL), at most 32000 dots (the key is spelled so)",
                     {{"40", "320 dots", kChanges}, {"5000", "32000 dots", kChanges}, {"70", "560 dots", kKeeps},
                      {"0", "keeps the default", kKeeps}}),
              Number("param_Peeling", "0", "a signed whole number", "tear-off adjust (~TA), held to -120 .. 120",
                     {{"15", "15", kChanges}, {"-200", "-120", kChanges}, {"0", "keeps the default", kKeeps}}),
              Words("param_Speed", WordCase::kAny, "2 inches a second (^PR2)",
                    {{"50.8", "2 inches a second", kKeeps},
                     {"76.2", "3 inches a second", kChanges},
                     {"101.6", "4 inches a second", kChanges},
                     {"127.0", "5 inches a second", kChanges},
                     {"152.4", "6 inches a second", kChanges}},
                    "2 inches a second", kKeeps),
              Number("param_Displacement", "0", mm,
                     "how far the label home moves down after a logo, at most 32000 dots",
                     {{"10", "80 dots", kChanges}, {"0", "keeps the default", kKeeps}}),
              Number("param_Origin_Y", "0", mm, "label home Y (^LH), at most 32000 dots",
                     {{"5", "40 dots", kChanges}, {"0", "keeps the default", kKeeps}}),
              Number("param_Origin_X", "3 dots", mm, "label home X (^LH), at most 32000 dots",
                     {{"1", "8 dots", kChanges}, {"0", "keeps the default", kKeeps}}),
              Number("param_MagFactor", "1", "a whole number 1 to 20 (more counts as 20)",
                     "scales the font and the barcode modules",
                     {{"3", "3", kChanges}, {"25", "20", kChanges}, {"1", "1", kKeeps},
                      {"0", "keeps the default", kKeeps}}),
          },
          {{100, "ready"},
           {101, "no answer, a garbled answer, or a printer fault (buffer full, corrupt RAM)"},
           {105, "paused: press the pause button"},
           {110, "print head too cold or too hot"},
           {112, "labels out, or a ribbon problem"}}};
}

CatalogueModel Italora() {
  return {"create_KpITALORA",
          "thermal label printer driven by ?NN& text command lines",
          "italora.md",
          {
              Words("param_Resolution", WordCase::kAny, "8 dots per mm (203 dpi)",
                    {{"8", "8 dots per mm", kKeeps},
                     {"12", "12 dots per mm (300 dpi)", kChanges},
                     {"24", "24 dots per mm (600 dpi)", kChanges}}),
              Number("param_WidthLabel", "100 mm", "decimal millimetres 10 to 216 (57.5 or 57,5)",
                     "label width, rounded to the printer's dot",
                     {{"57.5", "57.5 mm", kChanges}, {"57,5", "57.5 mm", kChanges}, {"10", "10 mm", kChanges},
                      {"100", "100 mm", kKeeps}, {"9.5", "keeps the default", kKeeps},
                      {"217", "keeps the default", kKeeps}}),
              Number("param_LenghtLabel", "70 mm", "decimal millimetres 5 to 1000",
                     "label length, rounded to the printer's dot",
                     {{"40", "40 mm", kChanges}, {"1000", "1000 mm", kChanges}, {"4", "keeps the default", kKeeps}}),
              Number("param_LengthLabel", "70 mm", "decimal millimetres 5 to 1000",
                     "label length, the usual spelling; read after param_LenghtLabel, so it wins when both are sent",
                     {{"40", "40 mm", kChanges}, {"1001", "keeps the default", kKeeps}}),
              Number("param_Origin_X", "1 mm", "decimal millimetres, 0 to under half the label width",
                     "left and right margin",
                     {{"0", "no margin", kChanges}, {"2.5", "2.5 mm", kChanges}, {"50", "keeps the default", kKeeps},
                      {"-1", "keeps the default", kKeeps}}),
              Number("param_Origin_Y", "1 mm", "decimal millimetres, 0 to under half the label length", "top margin",
                     {{"3", "3 mm", kChanges}, {"35", "keeps the default", kKeeps}}),
              Number("param_Darkness", "8", "a whole number 1 to 15", "print darkness (?01)",
                     {{"15", "15", kChanges}, {"1", "1", kChanges}, {"8", "8", kKeeps},
                      {"16", "keeps the default", kKeeps}, {"0", "keeps the default", kKeeps}}),
              Number("param_Speed", "100 mm a second", "a whole number 25 to 200 (mm a second)", "print speed (?01)",
                     {{"25", "25", kChanges}, {"200", "200", kChanges}, {"24", "keeps the default", kKeeps}}),
              Number("param_Copies", "1", "a whole number 1 to 99", "copies of each label (?03)",
                     {{"3", "3", kChanges}, {"99", "99", kChanges}, {"100", "keeps the default", kKeeps},
                      {"0", "keeps the default", kKeeps}}),
              Words("param_PrintFoilType", WordCase::kAny, "direct thermal (D)",
                    {{"TRUE", "thermal transfer with a ribbon (T)", kChanges}}),
          },
          {{100, "ready"},
           {101, "no answer, or an answer of the wrong shape"},
           {102, "labels out"},
           {103, "ribbon out"},
           {104, "paused (panel button)"},
           {105, "print head open"},
           {108, "printer fault"},
           {110, "print head too hot"}}};
}

std::vector<CatalogueModel> Build() {
  std::vector<CatalogueModel> byModel = {Italora(), Lx300(), Plus(),  Q1(),    Stb112(), Stb60(),
                                         Stb80(),   Tm295(), Tm300(), Tmt70(), Vkp80ii(), Zebra()};
  // In the order of the identities, whatever the order above.
  std::vector<CatalogueModel> ordered;
  for (std::size_t i = 0; i < kModelCount; ++i) {
    for (CatalogueModel& model : byModel)
      if (std::strcmp(model.factory, kModelIdentities[i].factory) == 0) ordered.push_back(std::move(model));
  }
  return ordered;
}

}  // namespace

const std::vector<CatalogueModel>& ModelCatalogue() {
  static const std::vector<CatalogueModel> catalogue = Build();
  return catalogue;
}

const CatalogueModel* FindCatalogueModel(const char* factory) {
  for (const CatalogueModel& model : ModelCatalogue())
    if (std::strcmp(model.factory, factory) == 0) return &model;
  return nullptr;
}

const std::vector<CatalogueStatus>& CommonStatuses() {
  static const std::vector<CatalogueStatus> statuses = {
      {150, "the printer reported a status below 100 (an unknown condition)"},
      {1, "CHECK before INIT_PRINTER (recorded after error 3)"}};
  return statuses;
}
