// What each virtual printer is: its command language, its paper and fonts in dots, its
// status protocol and the commands of its own family. One row a model; the interpreters
// read the differences from here instead of naming models.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace posprint::emulator {

enum class Language {
  kEscPos,   // ESC/POS and its relatives: receipt, slip and ticket printers
  kEscP,     // ESC/P: the dot-matrix document printer
  kZpl,      // ZPL II labels
  kItalora,  // ?NN&... command lines: the ITALORA label printer
};

// How the printer answers status requests.
enum class StatusKind {
  kTmt70,    // DLE EOT 1..4, one byte each
  kVkp80ii,  // DLE EOT 20: six bytes 10 0F paper, user, recoverable, unrecoverable
  kTm300,    // ESC v: paper sensors (bits 0-1 near end, 2-3 paper end)
  kTm295,    // ESC v: slip sensors (bit 1 no slip, bit 0 slip near its end)
  kStb60,    // ESC v: as the TM300
  kStb112,   // DLE EOT 2 printer byte, DLE EOT 0x11 paper byte
  kStbFull,  // DLE EOT 2 printer byte, DLE EOT 0x14 six bytes (STB80, Q-series)
  kZpl,      // ~HS: three framed strings
  kItalora,  // ?90: one line !90&paper&head&ribbon&pause&error
  kNone,     // never answers (the dot-matrix printer)
};

// How ESC ! bit 0 (and ESC 0xC1) choose the character size.
enum class FontScheme {
  kEpson,   // bit 0: font B; ESC M n
  kCustom,  // ESC 0xC1 f: 1 small; else bit 0 set: normal, clear: large
  kStb,     // the row's one font, whatever bit 0 says
};

// The port mode a printer starts in.
enum class PortMode {
  kPlain,
  kScrambled,  // always runs scrambled (its setting is stored in the printer)
  kLearn,      // set up like the terminal: the first byte it ever gets tells which
};

struct Cell {
  int width;
  int height;
};

// One paper width: the paper and its printable part in dots (8 dots a millimetre), the
// character cells of fonts A, B and C, and the default line spacing in dots.
struct Row {
  int paperDots;
  int printableDots;
  Cell fontA, fontB, fontC;
  int lineSpacing;
};

struct ModelProfile {
  const char* name;       // the driver's model name: "TMT70", "QSeries", "ZEBRA"
  const char* component;  // the driver's component name: "KpTMT70"
  Language language;
  StatusKind status;
  FontScheme fonts;
  Row rows[2];            // [0] as powered on; [1] the narrow paper the STB112 can be set to
  std::uint8_t pc858Table;  // ESC t n that selects PC858 (the TM300 knows it as 2)
  PortMode portMode;
  bool scrambling;      // ESC 0xF9 n: take up the scrambled port mode with key n
  bool settingFrames;   // GS 0xFF 0x0A 0x32 settings, GS 0xF4..0xF8 paper commands, ESC ( v
  bool presenter;       // GS e n m: the ticket presenter
  bool slip;            // FF ejects the slip; ESC q releases it; ESC F n
  bool identifies;      // GS I n answers; the answer to GS I 1 switches to scrambled
  bool escC1TakesParameter;  // ESC 0xC1 f (VKP80II) or ESC 0xC1 alone (STB family)
  int barModule;             // GS w at power-on: dots a narrow bar
  bool carriageReturnFeeds;  // CR prints the line and feeds, like LF (the PLUS's line end)
  bool holdsLineWhenStopped;  // out of paper, open or in error it holds the line with XOFF
};

// By model name ("TMT70"), component name ("KpTMT70") or "Q1", in any letter case.
const ModelProfile* FindProfile(const std::string& name);
std::vector<std::string> ProfileNames();

// The byte a Q-series printer answers to GS I 1 (its model identification).
constexpr std::uint8_t kQSeriesIdentification = 0x51;
// The scrambling key of ESC 0xF9 that the family's drivers use.
constexpr std::uint8_t kFamilyScrambleKey = 0xCB;

}  // namespace posprint::emulator
