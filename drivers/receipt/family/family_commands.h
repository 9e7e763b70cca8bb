// The command routines that the VKP80II, TM300 and TM295 share. The three printers speak
// the same ESC/POS dialect and differ in bytes and numbers: each model's command layer
// hands its own table to these routines.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/driver_base.h"
#include "frame/port_context.h"
#include "frame/printer_result.h"
#include "platform/parameters.h"

namespace ReceiptFamily {

// --- configuration of the roll printers (VKP80II, TM300) ---

// DriverConfig of a roll printer: four bytes.
struct RollConfig {
  std::uint8_t ejectFeedLines = 0;  // line feeds at the end of a ticket
  std::uint8_t ignoreNearEnd = 0;   // 1: the near-end-of-paper condition is not reported
  std::uint8_t ignorePaperEnd = 0;  // 1: the end-of-paper condition is not reported
  std::uint8_t cutMode = 0;         // model-specific cut at the end of a ticket; 0 none
};
static_assert(sizeof(RollConfig) == 4, "the roll printers' configuration block is four bytes");

struct CutWord {
  const wchar_t* word;  // compared as written: "VAL_FULL" is not "val_Full"
  std::uint8_t cutMode;
};

// A model's keys and defaults.
struct RollConfigKeys {
  const wchar_t* feedKey;      // "FALSE" (any case) sends no line feeds
  std::uint8_t feedDefault;
  const wchar_t* nearEndKey;   // "FALSE" ignores the near-end sensor
  const wchar_t* paperEndKey;  // "FALSE" ignores the paper-end sensor
  const wchar_t* cutKey;
  CutWord cutWords[2];         // unused rows have a null word
  bool cutRestoresFeeds;       // a cut word read last brings the feed default back
};

void ReadRollConfig(const IParameterCollection& keys, const RollConfigKeys& model, RollConfig& config);

// --- code page ---

// The ESC t table number a model uses for each framework code page.
struct CodePageBytes {
  std::uint8_t pc437;  // code page 8
  std::uint8_t pc858;  // code page 12
};
// ESC t n for code pages 8 and 12; any other sends nothing and gives 0.
PrinterResult SelectCodePageBy(const PortContext& ctx, int codePage, const CodePageBytes& table);

// --- font ---

// One font of a model: its ESC ! starting bits, characters per line and the byte of the
// model's font-family command (where it has one).
struct FontRow {
  std::uint8_t family;
  std::uint8_t mode;
  int charsPerLine;
};

struct FontTable {
  bool familyCommand;      // ESC 0xC1 f goes before ESC !
  FontRow normal;          // any font code other than the two below
  FontRow small;           // SMALL, FONTB
  FontRow large;           // LARGE, FONTC
  std::uint8_t style[10];  // ESC ! bits by style code 50..59
  bool clampToDouble;      // expansion codes above 2 act as 2; else they enlarge nothing
};

// Font, style and expansion to the printer (ESC 0xC1 f where the model has it, then
// ESC ! n), and the characters per line to the context. 1 when every write went out.
PrinterResult SelectFontBy(PortContext& ctx, const TextAttributes& attributes, const FontTable& table);

// --- status ---

enum class Sensor { kNone, kNearEnd, kPaperEnd };

// One status test: the reply byte, its bits (any of them set), the sensor setting that
// silences it, and the status it reports.
struct StatusRule {
  int byte;
  std::uint8_t mask;
  Sensor silencedBy;
  int status;
};

// The first rule that holds gives the status; none gives 100.
int DecodeStatus(const std::uint8_t* reply, const StatusRule* rules, int ruleCount, bool ignoreNearEnd,
                 bool ignorePaperEnd);

// --- paper ---

// `count` LF bytes, one a write; failures are not looked at (the ticket still goes out).
void FeedOneByOne(const PortContext& ctx, int count);

// ESC 3 n (line spacing n), the logo as 8-dot single-density bit-image bands, ESC 2.
// The result is the bit image's, whatever the spacing commands did.
PrinterResult PrintBitImageLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp,
                                std::uint8_t lineSpacing);

}  // namespace ReceiptFamily
