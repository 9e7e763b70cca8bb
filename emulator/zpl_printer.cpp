// The ZPL II virtual label printer. A command is a caret or tilde, two letters and its
// parameters up to the next caret or tilde; a label is what one format (^XA .. ^XZ)
// draws. Settings of the printer itself (print width, label length, label home, default
// font, barcode defaults) carry over from one format to the next, as they do on the
// real printer; ^ commands outside a format are ignored, as the real printer ignores
// them; ~HS is answered as soon as it arrives.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "emulator/barcodes.h"
#include "emulator/glyphs.h"
#include "emulator/interpreter.h"
#include "emulator/label_roll.h"
#include "emulator/stored_graphics.h"

namespace posprint::emulator {
namespace {

constexpr std::size_t kMaxCommandLength = 4096;
// Font F, the one the label driver uses: a 13 x 26 dot cell with 3 dots between
// characters, enlarged by whole multiples.
constexpr int kFontFWidth = 13, kFontFHeight = 26, kFontFGap = 3;
constexpr double kBaselineShare = 0.8;  // of a cell's height above its baseline

struct FieldState {
  bool hasOrigin = false;
  bool baselineOrigin = false;  // ^FT rather than ^FO
  int x = 0, y = 0;
  bool hex = false;
  char hexIndicator = '_';
  bool hasData = false;
  std::string data;
  std::string barcode;  // "BC", "BE", ... or empty for text
  std::vector<std::string> barcodeParameters;
};

struct Font {
  char name = 'F';
  int height = kFontFHeight;
  int width = kFontFWidth;
};

int ToInt(const std::string& text, int fallback) {
  if (text.empty()) return fallback;
  char* end = nullptr;
  const long value = std::strtol(text.c_str(), &end, 10);
  if (end == text.c_str()) return fallback;
  return static_cast<int>(std::clamp(value, -100000L, 100000L));
}

std::vector<std::string> Split(const std::string& text) {
  std::vector<std::string> parts;
  std::string part;
  for (char c : text) {
    if (c == ',') {
      parts.push_back(part);
      part.clear();
    } else {
      part += c;
    }
  }
  parts.push_back(part);
  return parts;
}

std::string At(const std::vector<std::string>& parts, std::size_t i) { return i < parts.size() ? parts[i] : ""; }

class ZplPrinter : public Interpreter {
 public:
  ZplPrinter(int dotsPerMm, PrinterLink link, Notes& notes)
      : dotsPerMm_(std::clamp(dotsPerMm, 1, 24)), link_(std::move(link)), notes_(notes) {}

  void Feed(std::uint8_t byte) override {
    const char c = static_cast<char>(byte);
    if (!inCommand_) {
      if (c == '^' || c == '~') {
        Begin(c);
      } else if (c != '\r' && c != '\n' && c != ' ' && c != '\t' && !strayNoted_) {
        strayNoted_ = true;
        notes_.Add("characters outside any command are ignored (first: " + HexBytes(&byte, 1) + ")");
      }
      return;
    }
    const bool fieldData = command_.size() >= 3 && command_[1] == 'F' && command_[2] == 'D';
    if (command_.size() >= 3 && (c == '^' || (c == '~' && !fieldData))) {
      Execute();
      Begin(c);
      return;
    }
    if (c == '\r' || c == '\n') return;
    if (command_.size() < 3) {
      command_ += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));  // names in any case
    } else if (command_.size() < kMaxCommandLength) {
      command_ += c;
    } else if (!longNoted_) {
      longNoted_ = true;
      notes_.Add(command_.substr(0, 3) + ": parameters longer than " + std::to_string(kMaxCommandLength) + " bytes are cut");
    }
    if (command_.size() == 3 && TakesNoParameters(command_)) {
      Execute();
      inCommand_ = false;
    }
  }

  void Finish() override {
    if (inCommand_ && command_.size() >= 3) {
      Execute();
    } else if (inCommand_) {
      notes_.Add("a command was cut short: \"" + command_ + "\"");
    }
    inCommand_ = false;
    if (inFormat_) notes_.Add("a format (^XA) was never ended with ^XZ: its label is not printed");
  }

  std::size_t PendingBytes() const override { return inCommand_ ? command_.size() : 0; }
  void SetState(PrinterState state) override { state_ = state; }

  int FinishedPages() const override { return labels_.Count(); }
  Image Page(int index) const override { return labels_.Label(index); }
  Image Unfinished() const override { return inFormat_ && drawn_ ? label_ : Image(); }
  Image Preview() const override { return labels_.Preview(); }

 private:
  void Begin(char prefix) {
    inCommand_ = true;
    command_.assign(1, prefix);
  }

  static bool TakesNoParameters(const std::string& command) {
    static const char* const kBare[] = {"^XA", "^XZ", "^FS", "~HS", "^JA", "~JA"};
    for (const char* bare : kBare)
      if (command == bare) return true;
    return false;
  }

  // --- commands ---

  void Execute() {
    inCommand_ = false;
    const std::string name = command_.substr(0, 3);
    const std::string parameters = command_.substr(3);
    if (name[0] == '~') {
      ExecuteTilde(name);
      return;
    }
    if (name == "^XA") {
      if (inFormat_) notes_.Add("^XA inside a format: the format starts again");
      inFormat_ = true;
      drawn_ = false;
      field_ = FieldState();
      return;
    }
    if (!inFormat_) {
      notes_.Add(name + " outside a format (^XA .. ^XZ): ignored");
      return;
    }
    if (!ExecuteInFormat(name, parameters)) notes_.Add("unknown command " + name + " (\"" + command_ + "\")");
  }

  void ExecuteTilde(const std::string& name) {
    if (name == "~HS") {
      HostStatus();
    } else if (name == "~TA" || name == "~JS" || name == "~SD") {
      // tear-off position, back-feed sequence, darkness: nothing to draw
    } else if (name == "~JA") {
      CancelAll();
    } else {
      notes_.Add("unknown command " + name);
    }
  }

  bool ExecuteInFormat(const std::string& name, const std::string& parameters) {
    const std::vector<std::string> p = Split(parameters);
    if (name == "^XZ") {
      EndFormat();
    } else if (name == "^FO" || name == "^FT") {
      field_.hasOrigin = true;
      field_.baselineOrigin = name == "^FT";
      field_.x = std::max(0, ToInt(At(p, 0), 0));
      field_.y = std::max(0, ToInt(At(p, 1), 0));
    } else if (name == "^FD") {
      field_.hasData = true;
      field_.data = parameters;
    } else if (name == "^FH") {
      field_.hex = true;
      field_.hexIndicator = parameters.empty() ? '_' : parameters[0];
    } else if (name == "^FS") {
      DrawField();
      field_ = FieldState();
    } else if (name == "^FX") {
      // a comment
    } else if (name == "^CF") {
      if (!At(p, 0).empty()) font_.name = static_cast<char>(std::toupper(static_cast<unsigned char>(At(p, 0)[0])));
      font_.height = std::clamp(ToInt(At(p, 1), font_.height), 1, 32000);
      font_.width = std::clamp(ToInt(At(p, 2), font_.width), 1, 32000);
    } else if (name == "^BY") {
      moduleDots_ = std::clamp(ToInt(At(p, 0), moduleDots_), 1, 10);
      if (!At(p, 1).empty()) ratio_ = std::clamp(std::atof(At(p, 1).c_str()), 2.0, 3.0);
      barHeight_ = std::clamp(ToInt(At(p, 2), barHeight_), 1, 32000);
    } else if (name == "^BC" || name == "^BE" || name == "^B8" || name == "^B3" || name == "^B2" || name == "^BQ") {
      field_.barcode = name.substr(1);
      field_.barcodeParameters = p;
    } else if (name == "^XG") {
      RecallGraphicField(p);
    } else if (name == "^LH") {
      homeX_ = std::max(0, ToInt(At(p, 0), homeX_));
      homeY_ = std::max(0, ToInt(At(p, 1), homeY_));
    } else if (name == "^LL") {
      labelLength_ = std::clamp(ToInt(At(p, 0), labelLength_), 1, 32000);
    } else if (name == "^PW") {
      labelWidth_ = std::clamp(ToInt(At(p, 0), labelWidth_), 2, kMaxImageWidth);
    } else if (name == "^CI" || name == "^MT" || name == "^MM" || name == "^PR" || name == "^MF" ||
               name == "^JU" || name == "^PQ" || name == "^MN" || name == "^MD" || name == "^PO") {
      // character set (always read as Windows-1252 here), media, speed, power-up
      // behaviour, saving the settings, quantity, darkness, orientation
    } else if (name == "^JA") {
      CancelAll();
    } else {
      return false;
    }
    return true;
  }

  void CancelAll() {
    drawn_ = false;
    label_ = Image();
    field_ = FieldState();
  }

  void EndFormat() {
    if (!field_.barcode.empty() || field_.hasData) DrawField();  // a field left open
    if (drawn_ && Prints(state_) && !labels_.Add(label_)) notes_.Add("the virtual printer keeps no more labels: this one is not drawn");
    inFormat_ = false;
    drawn_ = false;
    label_ = Image();
    field_ = FieldState();
  }

  Image& Label() {
    if (!drawn_) {
      const long length = std::min<long>({labelLength_, kMaxImageHeight, kMaxLabelDots / labelWidth_});
      label_ = Image(labelWidth_, static_cast<int>(length));
      drawn_ = true;
    }
    return label_;
  }

  // --- fields ---

  std::string FieldBytes() const {
    if (!field_.hex) return field_.data;
    std::string out;
    const std::string& data = field_.data;
    for (std::size_t i = 0; i < data.size(); ++i) {
      const int escaped = data[i] == field_.hexIndicator && i + 2 < data.size() ? HexByteAt(data, i + 1) : -1;
      if (escaped >= 0) {
        out += static_cast<char>(escaped);
        i += 2;
      } else {
        out += data[i];
      }
    }
    return out;
  }

  void DrawField() {
    if (!field_.barcode.empty()) {
      DrawBarcode();
    } else if (field_.hasData) {
      DrawText(FieldBytes());
    }
  }

  struct TextCell {
    int width, height, advance;
  };

  TextCell CellOfFont() const {
    if (font_.name == '0') return {font_.width, font_.height, font_.width};
    const int wm = std::max(1, static_cast<int>(std::lround(static_cast<double>(font_.width) / kFontFWidth)));
    const int hm = std::max(1, static_cast<int>(std::lround(static_cast<double>(font_.height) / kFontFHeight)));
    return {kFontFWidth * wm, kFontFHeight * hm, (kFontFWidth + kFontFGap) * wm};
  }

  void DrawText(const std::string& text) {
    if (text.empty()) return;
    const TextCell cell = CellOfFont();
    const Image picture = DrawTextLine(text, cell.width, cell.height, cell.advance);
    int top = field_.y;
    if (field_.baselineOrigin) top -= static_cast<int>(std::lround(cell.height * kBaselineShare));
    Label().DrawOver(picture, homeX_ + field_.x, homeY_ + top);
  }

  static bool YesFlag(const std::string& value, bool fallback) {
    if (value.empty()) return fallback;
    return value[0] == 'Y' || value[0] == 'y';
  }

  void DrawBarcode() {
    const std::string type = field_.barcode;
    const std::vector<std::string>& p = field_.barcodeParameters;
    std::string data = FieldBytes();
    if (type == "BQ") {
      DrawQrCode(p, data);
      return;
    }
    Symbology symbology = Symbology::kCode128;
    int height = barHeight_;
    bool line = true, above = false;
    if (type == "BC") {
      height = ToInt(At(p, 1), height), line = YesFlag(At(p, 2), true), above = YesFlag(At(p, 3), false);
    } else if (type == "BE" || type == "B8") {
      symbology = type == "BE" ? Symbology::kEan13 : Symbology::kEan8;
      height = ToInt(At(p, 1), height), line = YesFlag(At(p, 2), true), above = YesFlag(At(p, 3), false);
      const std::size_t digits = type == "BE" ? 12 : 7;
      if (data.size() > digits) data = data.substr(0, digits);  // the printer makes its own check digit
    } else if (type == "B3") {
      symbology = Symbology::kCode39;
      height = ToInt(At(p, 2), height), line = YesFlag(At(p, 3), true), above = YesFlag(At(p, 4), false);
    } else if (type == "B2") {
      symbology = Symbology::kItf;
      height = ToInt(At(p, 1), height), line = YesFlag(At(p, 2), true), above = YesFlag(At(p, 3), false);
      if (data.size() % 2 != 0) data = "0" + data;  // an odd count gets a leading zero
    }
    height = std::clamp(height, 1, 32000);
    const Symbol symbol = Encode(symbology, data);
    if (!symbol.Ok()) {
      notes_.Add("^" + type + " barcode not printed: " + symbol.error + " (data \"" + data + "\")");
      return;
    }
    const Image bars = DrawBars(symbol, symbology, moduleDots_, height, ratio_);
    int top = field_.baselineOrigin ? field_.y - height : field_.y;
    const int x = homeX_ + field_.x;
    const TextCell cell = InterpretationCell();
    const Image text = DrawTextLine(symbol.text, cell.width, cell.height, cell.advance);
    if (line && above) {
      Label().DrawOver(text, x + (bars.Width() - text.Width()) / 2, homeY_ + top);
      top += cell.height + 2;
    }
    Label().DrawOver(bars, x, homeY_ + top);
    if (line && !above) Label().DrawOver(text, x + (bars.Width() - text.Width()) / 2, homeY_ + top + height + 2);
  }

  // The interpretation line: about 3 mm high, whatever the module width.
  TextCell InterpretationCell() const {
    const int height = 3 * dotsPerMm_;
    const int width = std::max(5, height / 2);
    return {width, height, width + 1};
  }

  // ^BQ field data: error correction (H, Q, M, L), input mode (A automatic, M manual),
  // a comma, then in manual mode a character mode (B: four-digit byte count, then the
  // bytes; N or A: the rest).
  void DrawQrCode(const std::vector<std::string>& p, const std::string& data) {
    const int magnification = std::clamp(ToInt(At(p, 2), 2), 1, 10);
    QrLevel level = QrLevel::kM;
    std::string content;
    if (data.size() >= 3 && data[2] == ',') {
      switch (data[0]) {
        case 'H': level = QrLevel::kH; break;
        case 'Q': level = QrLevel::kQ; break;
        case 'L': level = QrLevel::kL; break;
        default: level = QrLevel::kM; break;
      }
      content = data.substr(3);
      if (data[1] == 'M' && !content.empty()) {
        const char mode = content[0];
        if (mode == 'B' && content.size() >= 5) {
          const int count = ToInt(content.substr(1, 4), -1);
          content = content.substr(5);
          if (count >= 0 && static_cast<std::size_t>(count) < content.size()) content.resize(count);
          if (count < 0 || static_cast<std::size_t>(count) > content.size())
            notes_.Add("^BQ byte count does not match the data: printed what came");
        } else {
          content = content.substr(1);
        }
      }
    } else {
      notes_.Add("^BQ field data without its error-correction and mode prefix: taken as data");
      content = data;
    }
    const Symbol symbol = Encode(Symbology::kQrCode, content, level);
    if (!symbol.Ok()) {
      notes_.Add("^BQ QR code not printed: " + symbol.error);
      return;
    }
    const Image matrix = DrawMatrix(symbol, magnification);
    const int top = field_.baselineOrigin ? field_.y - matrix.Height() : field_.y;
    Label().DrawOver(matrix, homeX_ + field_.x, homeY_ + top);
  }

  void RecallGraphicField(const std::vector<std::string>& p) {
    const std::string name = At(p, 0);
    const int mx = std::clamp(ToInt(At(p, 1), 1), 1, 10), my = std::clamp(ToInt(At(p, 2), 1), 1, 10);
    Image graphic;
    std::string problem;
    if (!RecallGraphic(name, &graphic, &problem)) {
      notes_.Add("^XG: " + problem);
      return;
    }
    Label().DrawOver(graphic.Scaled(mx, my), homeX_ + field_.x, homeY_ + field_.y);
  }

  // --- status ---

  static std::string Framed(const std::string& body) { return "\x02" + body + "\x03\r\n"; }

  void HostStatus() {
    if (state_ == PrinterState::kSilent || !link_.answer) return;
    const bool paperOut = state_ == PrinterState::kPaperOut;
    const bool headUp = state_ == PrinterState::kCoverOpen;
    const bool overheated = state_ == PrinterState::kError;
    // A printer out of paper or with its head open pauses.
    const bool paused = paperOut || headUp;
    char first[40];
    std::snprintf(first, sizeof first, "030,%d,%d,%04d,000,0,0,0,000,0,0,%d", paperOut, paused,
                  std::min(labelLength_, 9999), overheated);
    char second[40];
    std::snprintf(second, sizeof second, "001,0,%d,0,0,2,6,0,00000000,0,000", headUp);
    link_.answer(Framed(first));
    link_.answer(Framed(second));
    link_.answer(Framed("1234,0"));
  }

  int dotsPerMm_;
  PrinterLink link_;
  Notes& notes_;
  PrinterState state_ = PrinterState::kReady;

  bool inCommand_ = false;
  std::string command_;
  bool strayNoted_ = false;
  bool longNoted_ = false;

  // The printer's settings.
  int labelWidth_ = 800;
  int labelLength_ = 1200;
  int homeX_ = 0, homeY_ = 0;
  Font font_;
  int moduleDots_ = 2;
  double ratio_ = 3.0;
  int barHeight_ = 10;

  // The format in progress.
  bool inFormat_ = false;
  bool drawn_ = false;
  Image label_;
  FieldState field_;

  LabelRoll labels_;
};

}  // namespace

std::unique_ptr<Interpreter> MakeZplPrinter(const ModelProfile& profile, int dotsPerMm, PrinterLink link,
                                            Notes& notes) {
  (void)profile;
  return std::make_unique<ZplPrinter>(dotsPerMm, std::move(link), notes);
}

}  // namespace posprint::emulator
