// The ITALORA virtual label printer. It is driven by text lines: a question mark, a
// two-digit command number, parameters each introduced by an ampersand, a carriage
// return. ?02 starts a label of a size in millimetres, the drawing commands place text,
// bars, barcodes and stored pictures on it, ?03 prints it; ?90 is answered at once with
// the printer's state. Sizes and positions are millimetres, turned into dots at the
// printer's resolution.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "emulator/barcodes.h"
#include "emulator/glyphs.h"
#include "emulator/interpreter.h"
#include "emulator/label_roll.h"

namespace posprint::emulator {
namespace {

// A line longer than this (a picture of more than a few million dots) is dropped.
constexpr std::size_t kMaxLineLength = 4u << 20;
constexpr std::size_t kMaxPictures = 64;
constexpr int kMaxCopies = 99;
constexpr double kReadableLineMm = 2.5;  // the room above or below the bars for their text

struct FontCell {
  double widthMm, heightMm;
};
constexpr FontCell kFonts[] = {{1.5, 3.0}, {1.0, 2.0}, {2.0, 4.0}};
constexpr int kReadableFont = 2;

enum Style { kBold = 1, kUnderline = 2, kItalic = 4, kReverse = 8 };

// "12.375" or "12": a number of millimetres (or of anything) written with a decimal point.
bool ParseDecimal(const std::string& text, double* value) {
  if (text.empty() || text.size() > 16) return false;
  bool digits = false, point = false;
  for (char c : text) {
    if (c >= '0' && c <= '9') digits = true;
    else if (c == '.' && !point) point = true;
    else return false;
  }
  if (!digits) return false;
  *value = std::strtod(text.c_str(), nullptr);
  return true;
}

bool ParseWhole(const std::string& text, int* value) {
  double number;
  if (!ParseDecimal(text, &number) || text.find('.') != std::string::npos || number > 1e6) return false;
  *value = static_cast<int>(number);
  return true;
}

// The parts of a line after its command number: at most `count`, the last taking the rest
// of the line, ampersands and all.
std::vector<std::string> Parameters(const std::string& rest, std::size_t count) {
  std::vector<std::string> parts;
  if (rest.empty()) return parts;
  std::size_t at = 1;  // past the first '&'
  while (parts.size() + 1 < count) {
    const std::size_t amp = rest.find('&', at);
    if (amp == std::string::npos) break;
    parts.push_back(rest.substr(at, amp - at));
    at = amp + 1;
  }
  parts.push_back(rest.substr(at));
  return parts;
}

Image Turned(const Image& upright, int degrees) {
  switch (degrees) {
    case 90: return upright.RotatedClockwise();
    case 180: return upright.Rotated180();
    case 270: return upright.Rotated180().RotatedClockwise();
    default: return upright;
  }
}

// Draws `upright` turned by degrees clockwise about the corner (x, y) that was its
// top-left one.
void PlaceTurned(Image& label, const Image& upright, int x, int y, int degrees) {
  const int w = upright.Width(), h = upright.Height();
  const int left = degrees == 90 ? x - h : degrees == 180 ? x - w : x;
  const int top = degrees == 180 ? y - h : degrees == 270 ? y - w : y;
  label.DrawOver(Turned(upright, degrees), left, top);
}

class ItaloraPrinter : public Interpreter {
 public:
  ItaloraPrinter(int dotsPerMm, PrinterLink link, Notes& notes)
      : dotsPerMm_(std::clamp(dotsPerMm, 1, 24)), link_(std::move(link)), notes_(notes) {}

  void Feed(std::uint8_t byte) override {
    if (!inLine_) {
      if (byte == '?') {
        inLine_ = true;
        tooLong_ = false;
        line_.assign(1, '?');
      } else if (byte != '\r' && byte != '\n' && byte != ' ' && !strayNoted_) {
        strayNoted_ = true;
        notes_.Add("bytes outside any command line are ignored (first: " + HexBytes(&byte, 1) + ")");
      }
      return;
    }
    if (byte == '\r') {
      inLine_ = false;
      ++lines_;
      if (tooLong_) Note("longer than " + std::to_string(kMaxLineLength) + " bytes: dropped");
      else Execute();
      line_.clear();
      return;
    }
    if (line_.size() >= kMaxLineLength) {
      tooLong_ = true;
      return;
    }
    line_ += static_cast<char>(byte);
  }

  void Finish() override {
    if (inLine_) notes_.Add("a command line was never ended with CR: \"" + line_.substr(0, 24) + "\"");
    inLine_ = false;
    line_.clear();
    if (hasLabel_) notes_.Add("a label (?02) was never printed with ?03");
  }

  std::size_t PendingBytes() const override { return inLine_ ? line_.size() : 0; }
  void SetState(PrinterState state) override { state_ = state; }

  int FinishedPages() const override { return labels_.Count(); }
  Image Page(int index) const override { return labels_.Label(index); }
  Image Unfinished() const override { return hasLabel_ && drawn_ ? label_ : Image(); }
  Image Preview() const override { return labels_.Preview(); }

 private:
  void Note(const std::string& text) {
    notes_.Add("line " + std::to_string(lines_) + " (" + line_.substr(0, 3) + "): " + text);
  }

  void Execute() {
    if (line_.size() < 3 || !std::isdigit(static_cast<unsigned char>(line_[1])) ||
        !std::isdigit(static_cast<unsigned char>(line_[2]))) {
      Note("a command line begins with ? and two digits: ignored");
      return;
    }
    const std::string rest = line_.substr(3);
    if (!rest.empty() && rest[0] != '&') {
      Note("parameters begin with &: ignored");
      return;
    }
    const int command = (line_[1] - '0') * 10 + (line_[2] - '0');
    switch (command) {
      case 0: Reset(); return;
      case 1: Settings(Parameters(rest, 3)); return;
      case 2: NewLabel(Parameters(rest, 2)); return;
      case 3: PrintLabel(Parameters(rest, 1)); return;
      case 10: Text(Parameters(rest, 8)); return;
      case 20: Bar(Parameters(rest, 4)); return;
      case 30: Barcode(Parameters(rest, 9)); return;
      case 40: Recall(Parameters(rest, 4)); return;
      case 41: Store(Parameters(rest, 4)); return;
      case 90: Status(); return;
      default: Note("unknown command"); return;
    }
  }

  bool Count(const std::vector<std::string>& p, std::size_t wanted) {
    if (p.size() == wanted) return true;
    Note(std::to_string(wanted) + " parameters expected, " + std::to_string(p.size()) + " came: ignored");
    return false;
  }

  // Millimetres as dots; false (with a note) when the text is not a number.
  bool Dots(const std::string& text, const char* what, int* dots) {
    double mm;
    if (!ParseDecimal(text, &mm) || mm > 10000) {
      Note(std::string(what) + " \"" + text + "\" is not a number of millimetres: ignored");
      return false;
    }
    *dots = static_cast<int>(std::lround(mm * dotsPerMm_));
    return true;
  }

  bool Whole(const std::string& text, const char* what, int low, int high, int* value) {
    if (!ParseWhole(text, value) || *value < low || *value > high) {
      Note(std::string(what) + " \"" + text + "\" is not a whole number " + std::to_string(low) + " to " +
           std::to_string(high) + ": ignored");
      return false;
    }
    return true;
  }

  bool Degrees(const std::string& text, int* degrees) {
    if (ParseWhole(text, degrees) && (*degrees == 0 || *degrees == 90 || *degrees == 180 || *degrees == 270))
      return true;
    Note("rotation \"" + text + "\" is not 0, 90, 180 or 270: ignored");
    return false;
  }

  Image* Label() {
    if (hasLabel_) {
      drawn_ = true;
      return &label_;
    }
    Note("nothing to draw on: no label was started with ?02");
    return nullptr;
  }

  // --- the printer ---

  void Reset() {
    hasLabel_ = drawn_ = false;
    label_ = Image();
    pictures_.clear();
  }

  void Settings(const std::vector<std::string>& p) {
    int darkness, speed;
    if (!Count(p, 3) || !Whole(p[0], "darkness", 1, 15, &darkness) || !Whole(p[1], "speed", 1, 1000, &speed)) return;
    if (p[2] != "D" && p[2] != "T") Note("media \"" + p[2] + "\" is not D or T: ignored");
  }

  void NewLabel(const std::vector<std::string>& p) {
    int width, length;
    if (!Count(p, 2) || !Dots(p[0], "label width", &width) || !Dots(p[1], "label length", &length)) return;
    if (width < 1 || length < 1 || width > kMaxImageWidth || length > kMaxImageHeight ||
        static_cast<long>(width) * length > kMaxLabelDots) {
      Note("a label of " + p[0] + " x " + p[1] + " mm is beyond this printer: ignored");
      return;
    }
    if (hasLabel_ && drawn_) Note("a new label (?02) drops the unprinted one");
    label_ = Image(width, length);
    hasLabel_ = true;
    drawn_ = false;
  }

  void PrintLabel(const std::vector<std::string>& p) {
    int copies;
    if (!Count(p, 1) || !Whole(p[0], "copies", 1, kMaxCopies, &copies)) return;
    if (!hasLabel_) {
      Note("no label to print: none was started with ?02");
      return;
    }
    for (int i = 0; i < copies && Prints(state_); ++i) {
      if (!labels_.Add(label_)) {
        Note("the virtual printer keeps no more labels: this one is not drawn");
        break;
      }
    }
    hasLabel_ = drawn_ = false;
    label_ = Image();
  }

  void Status() {
    if (state_ == PrinterState::kSilent || !link_.answer) return;
    const bool paperOut = state_ == PrinterState::kPaperOut;
    const bool headOpen = state_ == PrinterState::kCoverOpen;
    const int error = state_ == PrinterState::kError ? 2 : 0;
    link_.answer("!90&" + std::to_string(paperOut) + "&" + std::to_string(headOpen) + "&0&0&" + std::to_string(error) + "\r");
  }

  // --- drawing ---

  Image TextPicture(const std::string& text, int font, int heightMul, int widthMul, int style) const {
    const int cellWidth = std::max(1, static_cast<int>(std::lround(kFonts[font - 1].widthMm * dotsPerMm_))) * widthMul;
    const int cellHeight = std::max(1, static_cast<int>(std::lround(kFonts[font - 1].heightMm * dotsPerMm_))) * heightMul;
    GlyphStyle glyphStyle;
    glyphStyle.bold = style & kBold;
    glyphStyle.italic = style & kItalic;
    Image picture = DrawTextLine(text, cellWidth, cellHeight, cellWidth, glyphStyle);
    if (style & kUnderline) picture.FillRect(0, cellHeight - std::max(1, dotsPerMm_ / 4), picture.Width(), std::max(1, dotsPerMm_ / 4), kBlack);
    return style & kReverse ? picture.Inverted() : picture;
  }

  // ?10&x&y&rotation&font&height&width&style&text
  void Text(const std::vector<std::string>& p) {
    int x, y, degrees, font, heightMul, widthMul, style;
    if (!Count(p, 8) || !Dots(p[0], "x", &x) || !Dots(p[1], "y", &y) || !Degrees(p[2], &degrees) ||
        !Whole(p[3], "font", 1, 3, &font) || !Whole(p[4], "height", 1, 8, &heightMul) ||
        !Whole(p[5], "width", 1, 8, &widthMul) || !Whole(p[6], "style", 0, 15, &style))
      return;
    Image* label = Label();
    if (!label || p[7].empty()) return;
    PlaceTurned(*label, TextPicture(p[7], font, heightMul, widthMul, style), x, y, degrees);
  }

  // ?20&x&y&length&thickness
  void Bar(const std::vector<std::string>& p) {
    int x, y, length, thickness;
    if (!Count(p, 4) || !Dots(p[0], "x", &x) || !Dots(p[1], "y", &y) || !Dots(p[2], "length", &length) ||
        !Dots(p[3], "thickness", &thickness))
      return;
    if (Image* label = Label()) label->FillRect(x, y, std::max(1, length), std::max(1, thickness), kBlack);
  }

  bool SymbologyOf(const std::string& name, Symbology* symbology) {
    static const std::map<std::string, Symbology> kNames = {
        {"128", Symbology::kCode128}, {"128A", Symbology::kCode128}, {"128B", Symbology::kCode128},
        {"128C", Symbology::kCode128}, {"39", Symbology::kCode39},    {"I25", Symbology::kItf},
        {"E13", Symbology::kEan13},   {"E8", Symbology::kEan8},       {"QR", Symbology::kQrCode}};
    const auto found = kNames.find(name);
    if (found == kNames.end()) {
      Note("symbology \"" + name + "\" is not known: barcode skipped");
      return false;
    }
    *symbology = found->second;
    return true;
  }

  // ?30&x&y&justify&rotation&symbology&module&height&text&data
  void Barcode(const std::vector<std::string>& p) {
    int x, y, degrees, module, height, readable;
    Symbology symbology;
    if (!Count(p, 9) || !Dots(p[0], "x", &x) || !Dots(p[1], "y", &y) || !Degrees(p[3], &degrees) ||
        !SymbologyOf(p[4], &symbology) || !Dots(p[5], "module", &module) || !Dots(p[6], "height", &height) ||
        !Whole(p[7], "text", 0, 3, &readable))
      return;
    if (p[2] != "L" && p[2] != "C" && p[2] != "R") {
      Note("justification \"" + p[2] + "\" is not L, C or R: barcode skipped");
      return;
    }
    const Symbol symbol = Encode(symbology, p[8]);
    if (!symbol.Ok()) {
      Note("barcode not printed: " + symbol.error + " (data \"" + p[8] + "\")");
      return;
    }
    Image* label = Label();
    if (!label) return;
    // A symbol more than twice as wide as the label cannot be read off it: skipped rather
    // than drawn (a garbled module would otherwise make a huge picture). Bars are at most
    // as long as the label.
    module = std::max(1, module);
    const long symbolDots = static_cast<long>(symbol.width) * module;
    if (symbolDots > 2L * label->Width()) {
      Note("a symbol " + std::to_string(symbolDots) + " dots wide does not fit the label: skipped");
      return;
    }
    int barsTop = 0;
    const Image block = symbology == Symbology::kQrCode
                            ? DrawMatrix(symbol, module)
                            : BarsWithText(symbol, symbology, module, std::clamp(height, 1, label->Height()), readable, &barsTop);
    const Image turned = Turned(block, degrees);
    const int left = p[2] == "L" ? x : p[2] == "C" ? x - turned.Width() / 2 : x - turned.Width();
    // Upright, y is the top of the bars and their text above stands higher still.
    const int top = degrees == 0 ? y - barsTop : y;
    label->DrawOver(turned, left, top);
  }

  Image BarsWithText(const Symbol& symbol, Symbology symbology, int module, int height, int readable, int* barsTop) {
    const Image bars = DrawBars(symbol, symbology, module, height);
    const int room = static_cast<int>(std::lround(kReadableLineMm * dotsPerMm_));
    const bool above = readable & 1, below = readable & 2;
    const Image text = TextPicture(symbol.text, kReadableFont, 1, 1, 0);
    const int inset = (room - text.Height()) / 2;
    Image block(std::max(bars.Width(), text.Width()), bars.Height() + (above ? room : 0) + (below ? room : 0));
    const int barsLeft = (block.Width() - bars.Width()) / 2, textLeft = (block.Width() - text.Width()) / 2;
    *barsTop = above ? room : 0;
    if (above) block.DrawOver(text, textLeft, inset);
    block.DrawOver(bars, barsLeft, *barsTop);
    if (below) block.DrawOver(text, textLeft, *barsTop + bars.Height() + inset);
    return block;
  }

  // ?40&x&y&rotation&name
  void Recall(const std::vector<std::string>& p) {
    int x, y, degrees;
    if (!Count(p, 4) || !Dots(p[0], "x", &x) || !Dots(p[1], "y", &y) || !Degrees(p[2], &degrees)) return;
    const auto found = pictures_.find(p[3]);
    if (found == pictures_.end()) {
      Note("no picture \"" + p[3] + "\" is stored (?41): nothing drawn");
      return;
    }
    if (Image* label = Label()) label->DrawOver(Turned(found->second, degrees), x, y);
  }

  // ?41&name&width&height&rows: rows of hexadecimal bytes, the leftmost dot in the high bit.
  void Store(const std::vector<std::string>& p) {
    int width, height;
    if (!Count(p, 4) || !Whole(p[1], "picture width", 1, kMaxImageWidth, &width) ||
        !Whole(p[2], "picture height", 1, kMaxImageHeight, &height))
      return;
    const std::size_t rowBytes = (static_cast<std::size_t>(width) + 7) / 8;
    const std::string& hex = p[3];
    if (hex.size() != 2 * rowBytes * height) {
      Note("picture \"" + p[0] + "\": " + std::to_string(2 * rowBytes * height) + " hexadecimal digits expected, " +
           std::to_string(hex.size()) + " came: not stored");
      return;
    }
    if (pictures_.size() >= kMaxPictures && pictures_.count(p[0]) == 0) {
      Note("the picture memory is full (" + std::to_string(kMaxPictures) + " pictures): \"" + p[0] + "\" not stored");
      return;
    }
    Image picture(width, height);
    for (int y = 0; y < height; ++y) {
      for (std::size_t b = 0; b < rowBytes; ++b) {
        const int value = HexByteAt(hex, 2 * (y * rowBytes + b));
        if (value < 0) {
          Note("picture \"" + p[0] + "\": a row holds a character that is not hexadecimal: not stored");
          return;
        }
        for (int bit = 0; bit < 8; ++bit)
          if (value & (0x80 >> bit)) picture.Set(static_cast<int>(b) * 8 + bit, y, kBlack);
      }
    }
    pictures_[p[0]] = picture;
  }

  int dotsPerMm_;
  PrinterLink link_;
  Notes& notes_;
  PrinterState state_ = PrinterState::kReady;

  bool inLine_ = false;
  bool tooLong_ = false;
  bool strayNoted_ = false;
  std::string line_;
  int lines_ = 0;

  bool hasLabel_ = false;
  bool drawn_ = false;
  Image label_;
  std::map<std::string, Image> pictures_;
  LabelRoll labels_;
};

}  // namespace

std::unique_ptr<Interpreter> MakeItaloraPrinter(const ModelProfile& profile, int dotsPerMm, PrinterLink link,
                                                Notes& notes) {
  (void)profile;
  return std::make_unique<ItaloraPrinter>(dotsPerMm, std::move(link), notes);
}

}  // namespace posprint::emulator
