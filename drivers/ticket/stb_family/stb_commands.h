// The command layer shared by the STB ticket printers (STB112, STB60, STB80) and their
// Q-series relative (Q1): setting frames, cuts, end of roll, code tables, the scrambled
// port mode and its recovery, the first status stage and the raster logo. One function a
// printer command, over the port context, each returning a PrinterResult.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "frame/port_context.h"
#include "frame/printer_result.h"
#include "frame/status_query.h"

namespace StbFamily {

// The scrambling key both ends agree on: the port XORs every byte with it, and the
// printer is told to take it up with ESC 0xF9 0xCB.
constexpr std::uint8_t kScrambleKey = 0xCB;  // 203

// Line width on ticket paper (the STB112's pre-cut tickets), in characters.
constexpr int kTicketRowWidth = 30;

// --- setting frames ---

// One setting of the printer's non-volatile set-up, and whether the printer confirms it
// with one answer byte that must be read before the next frame.
struct Setting {
  std::uint8_t number;
  std::uint8_t value;
  bool answered;
};

// Setting numbers the drivers use. The printer documents 0x09, 0x0A and 0x10 only by the
// values each paper needs, so they are named after the paper, not after a guess.
enum SettingNumber : std::uint8_t {
  kSettingPaperWidth = 0x01,  // 1: 80 mm paper, 0: the full width
  kSettingSheets = 0x09,      // 1: ticket or label paper, 0: roll
  kSettingLabels = 0x0A,      // 1: label paper (sent after the answer to 0x09)
  kSettingSheetKind = 0x10,   // 0: tickets, 1: labels
  kSettingDensity = 0x0F,     // print density, low byte of the configured value
};

// GS 0xFF 0x0A 0x32 setting value checksum: the checksum is the low byte of the sum of
// the six bytes before it.
PrinterResult stb_SettingFrame(const PortContext& ctx, std::uint8_t setting, std::uint8_t value);
// ESC @, then each setting in turn; 0 at the first short write or missing answer.
PrinterResult stb_Setup(const PortContext& ctx, const std::vector<Setting>& settings);

// --- plain commands ---

PrinterResult stb_Initialise(const PortContext& ctx);            // ESC @
// ESC t n: 8 (PC437) gives table 0, 12 (PC858) table 0x13; any other code sends nothing, 0.
PrinterResult stb_SelectCodeTable(const PortContext& ctx, int codePage);
// GS n: the two-byte paper commands (0xF4 .. 0xF8: start, ends and ejections of tickets
// and labels; the models name their own).
PrinterResult stb_PaperCommand(const PortContext& ctx, std::uint8_t command);
// ESC G 0, ESC ! 0x00 (32 characters a row) or 0x01 (any other width), ESC 0xC1: the
// normal font of the family's barcode text.
PrinterResult stb_SelectNormalFont(const PortContext& ctx);

// --- cuts and end of roll ---

enum class Cut { kNone, kFull, kPartial, kRetract };
PrinterResult stb_CutFull(const PortContext& ctx);     // ESC i
PrinterResult stb_CutPartial(const PortContext& ctx);  // ESC m
// Feed 100 forward, full cut, feed 100 back: the cut without losing the top margin.
PrinterResult stb_CutRetract(const PortContext& ctx);
PrinterResult stb_Cut(const PortContext& ctx, Cut cut);
// LF `feeds` times, one a write, then the cut of cutType (1 partial, 2 full, 0 none).
// The writes are not checked: the ticket is finished either way. Always 1.
PrinterResult stb_FeedAndCut(const PortContext& ctx, int feeds, int cutType);

// --- scrambled port mode ---

void stb_CryptOn(const PortContext& ctx);
void stb_CryptOff(const PortContext& ctx);
struct PortTimeouts {
  int first = 0;   // read
  int second = 0;  // write
};
PortTimeouts stb_GetTimeouts(const PortContext& ctx);
void stb_SetTimeouts(const PortContext& ctx, const PortTimeouts& timeouts);
void stb_Purge(const PortContext& ctx);
// Brings a printer that talks plain back into scrambled mode. The count of status bytes
// read afterwards (the byte in *answer), or 0 when the printer did not answer plain.
int stb_Resync(PortContext& ctx, std::uint8_t* answer);

// --- status ---

// Reads up to `count` bytes into `buffer` until they are all in or the line stays quiet;
// the count read (0 when nothing came or the port failed).
int stb_ReadAnswer(const PortContext& ctx, std::uint8_t* buffer, int count);
// Whether a failed status query is worth a Resync: the printer was spoken to whole but
// stayed silent, or talked out of turn. A port that failed itself never is.
bool stb_WorthResync(const PortContext& ctx);
// DLE EOT 2 through the shared status query, with the family's recovery when it fails and
// mayResync allows it. true with *status; false means 101.
bool stb_PrinterStatus(PortContext& ctx, Purge purge, bool mayResync, std::uint8_t* status);
// The STB80 and Q1 status after the first byte: cover (105), paper (102), then the six
// bytes of DLE EOT 0x14 (byte 4 bit 0x08: 104).
int stb_ExtendedStatus(PortContext& ctx, std::uint8_t first);

// --- logo ---

// The 1-bit BMP as one raster image at double size, centred on lineWidthDots. A logo
// wider than the paper overflows the margin computation and gives 11.
PrinterResult stb_PrintLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp, int lineWidthDots);

}  // namespace StbFamily
