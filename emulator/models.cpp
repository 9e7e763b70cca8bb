#include "emulator/models.h"

#include <cctype>

namespace posprint::emulator {
namespace {

// The STB60's 48 mm row is too narrow for a ticket number in Code 128 at the usual
// 3-dot module, so it starts with 2.
// Each model's fonts fill its printable width with the columns its driver lays text out
// in (42 on the TMT70, 32 on the STB60 ...), so text centred by the driver and a barcode
// or logo centred by the printer line up.
constexpr Row kNoRow = {0, 0, {0, 0}, {0, 0}, {0, 0}, 0};

constexpr ModelProfile kProfiles[] = {
    {"TMT70", "KpTMT70", Language::kEscPos, StatusKind::kTmt70, FontScheme::kEpson,
     {{640, 504, {12, 24}, {9, 17}, {12, 24}, 30}, kNoRow}, 19, PortMode::kPlain,
     false, false, false, false, false, false, 3, false, false},
    {"VKP80II", "KpVKP80II", Language::kEscPos, StatusKind::kVkp80ii, FontScheme::kCustom,
     {{660, 640, {15, 30}, {11, 22}, {20, 40}, 36}, kNoRow}, 19, PortMode::kPlain,
     false, false, true, false, false, true, 3, false, false},
    {"TM300", "KpTM300", Language::kEscPos, StatusKind::kTm300, FontScheme::kEpson,
     {{608, 400, {12, 24}, {10, 20}, {12, 24}, 30}, kNoRow}, 2, PortMode::kPlain,
     false, false, false, false, false, false, 3, false, false},
    {"TM295", "KpTM295", Language::kEscPos, StatusKind::kTm295, FontScheme::kEpson,
     {{560, 420, {12, 24}, {10, 20}, {12, 24}, 30}, kNoRow}, 19, PortMode::kPlain,
     false, false, false, true, false, false, 3, false, false},
    {"STB112", "KpSTB112", Language::kEscPos, StatusKind::kStb112, FontScheme::kStb,
     {{896, 832, {19, 38}, {19, 38}, {19, 38}, 44}, {640, 600, {18, 36}, {18, 36}, {18, 36}, 42}}, 19,
     PortMode::kLearn, true, true, false, false, false, false, 3, false, false},
    {"STB60", "KpSTB60", Language::kEscPos, StatusKind::kStb60, FontScheme::kStb,
     {{480, 384, {12, 24}, {12, 24}, {12, 24}, 30}, kNoRow}, 19, PortMode::kPlain,
     false, true, false, false, false, false, 2, false, false},
    {"STB80", "KpSTB80", Language::kEscPos, StatusKind::kStbFull, FontScheme::kStb,
     {{640, 600, {14, 28}, {14, 28}, {14, 28}, 34}, kNoRow}, 19, PortMode::kScrambled,
     true, true, false, false, false, false, 3, false, false},
    {"QSeries", "KpQ1", Language::kEscPos, StatusKind::kStbFull, FontScheme::kStb,
     {{640, 600, {14, 28}, {14, 28}, {14, 28}, 34}, kNoRow}, 19, PortMode::kPlain,
     true, true, false, false, true, false, 3, false, false},
    // 80 mm roll; the 58 mm roll is a setting of the printer, which the virtual one leaves at 80.
    {"PLUS", "KpPLUS", Language::kEscPos, StatusKind::kTmt70, FontScheme::kEpson,
     {{640, 576, {12, 24}, {9, 17}, {12, 24}, 30}, kNoRow}, 19, PortMode::kPlain,
     false, false, false, false, false, false, 3, true, false},
    // 9-pin dot matrix on continuous forms: its geometry is the ESC/P interpreter's own.
    {"LX300", "KpLX300", Language::kEscP, StatusKind::kNone, FontScheme::kEpson,
     {kNoRow, kNoRow}, 1, PortMode::kPlain, false, false, false, false, false, false, 3, false, true},
    {"ITALORA", "KpITALORA", Language::kItalora, StatusKind::kItalora, FontScheme::kEpson,
     {kNoRow, kNoRow}, 0, PortMode::kPlain, false, false, false, false, false, false, 3, false, false},
    {"ZEBRA", "KpZEBRA", Language::kZpl, StatusKind::kZpl, FontScheme::kEpson,
     {kNoRow, kNoRow}, 0, PortMode::kPlain, false, false, false, false, false, false, 3, false, false},
};

std::string Upper(const std::string& text) {
  std::string out;
  for (char c : text) out += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return out;
}

}  // namespace

const ModelProfile* FindProfile(const std::string& name) {
  const std::string wanted = Upper(name);
  for (const ModelProfile& profile : kProfiles) {
    if (wanted == Upper(profile.name) || wanted == Upper(profile.component)) return &profile;
  }
  if (wanted == "Q1") return FindProfile("QSeries");
  return nullptr;
}

std::vector<std::string> ProfileNames() {
  std::vector<std::string> names;
  for (const ModelProfile& profile : kProfiles) names.push_back(profile.name);
  return names;
}

}  // namespace posprint::emulator
