// The ESC/P virtual printer: the LX300, a 9-pin dot-matrix printer on continuous forms.
//
// The head prints characters and bit images where the print position stands; CR takes it
// back to the left margin, LF, ESC J and FF move the paper. Vertical motion counts in
// 1/216 inch and horizontal motion in 1/720 inch (every pitch and bit-image density of
// the printer is a whole number of those); the picture has 180 dots an inch, the grid of
// the printer's bar codes. The printer never answers: it holds the line with XOFF when it
// cannot print, which the virtual printer's port plays.
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "emulator/barcodes.h"
#include "emulator/glyphs.h"
#include "emulator/strip_printer.h"
#include "platform/codepage.h"

namespace posprint::emulator {
namespace {

constexpr std::uint8_t ESC = 0x1B;
constexpr int kDotsPerInch = 180;
constexpr int kXUnits = 720;                // horizontal unit: 1/720 inch
constexpr int kYUnits = 216;                // vertical unit: 1/216 inch
constexpr int kXUnitsPerDot = kXUnits / kDotsPerInch;
constexpr int kPica = kXUnits / 10;         // 10 characters an inch
constexpr int kCondensed = kXUnits * 7 / 120;  // 17.14 characters an inch
constexpr int kColumns = 80;
constexpr int kLineUnits = kColumns * kPica;   // 8 inches between the margins
constexpr int kPaperDots = kDotsPerInch * 17 / 2;  // 8.5-inch continuous form
constexpr int kPrintableDots = kLineUnits / kXUnitsPerDot;
constexpr int kCharUnits = 27;              // 9 pins of 1/72 inch: a character's height
constexpr int kDefaultSpacing = 36;         // 1/6 inch
constexpr int kDefaultPageLines = 66;       // 11-inch forms
constexpr int kPinUnits = 3;                // 1/72 inch between pins
constexpr int kHriGapDots = 2;
constexpr int kTabColumns = 8;

int Dots(int yUnits) { return yUnits * kDotsPerInch / kYUnits; }

// What ESC @ restores.
struct Mode {
  bool condensed = false;
  bool emphasized = false;
  bool doubleStrike = false;
  bool italic = false;
  bool underline = false;
  bool doubleWidth = false;
  bool doubleHeight = false;
  bool elite = false;  // 12 characters an inch
  int lineSpacing = kDefaultSpacing;
};

class EscPPrinter : public StripPrinter {
 public:
  explicit EscPPrinter(Notes& notes) : StripPrinter(kPaperDots, kPrintableDots, notes) { Initialise(); }

 private:
  std::size_t Parse(const std::uint8_t* p, std::size_t n) override {
    const std::uint8_t b = p[0];
    if (b >= 0x20) {
      PrintCharacter(b);
      return 1;
    }
    switch (b) {
      case 0x0D: x_ = 0; return 1;                   // CR
      case 0x0A: NewLine(); return 1;                // LF: feeds and returns, like CR LF
      case 0x0C: FormFeed(); return 1;               // FF
      case 0x0B: NewLine(); return 1;                // VT without tabs set: as LF
      case 0x09: Tab(); return 1;
      case 0x0F: mode_.condensed = true; return 1;   // SI
      case 0x12: mode_.condensed = false; return 1;  // DC2
      case 0x18: x_ = 0; return 1;                   // CAN: the line so far is dropped
      case 0x00: case 0x07: case 0x11: case 0x13: return 1;  // NUL, BEL, XON, XOFF
      case ESC: return ParseEsc(p, n);
      default:
        Note("stray control byte " + HexBytes(p, 1));
        return 1;
    }
  }

  std::size_t ParseEsc(const std::uint8_t* p, std::size_t n) {
    if (n < 2) return 0;
    const std::uint8_t c = p[1];
    switch (c) {
      case '@': Initialise(); return 2;
      case 'E': mode_.emphasized = true; return 2;
      case 'F': mode_.emphasized = false; return 2;
      case 'G': mode_.doubleStrike = true; return 2;
      case 'H': mode_.doubleStrike = false; return 2;
      case '4': mode_.italic = true; return 2;
      case '5': mode_.italic = false; return 2;
      case 'M': mode_.elite = true; return 2;
      case 'P': mode_.elite = false; return 2;
      case '2': mode_.lineSpacing = kDefaultSpacing; return 2;
      case '0': mode_.lineSpacing = kYUnits / 8; return 2;
      case '1': mode_.lineSpacing = 7 * kPinUnits; return 2;
      default: break;
    }
    // The rest take parameters: an unknown letter is reported at once, not after the byte
    // that follows it.
    static const std::string kWithParameters = "!-Ww3AJCtxRUklQNO$*KLYZ(";
    if (kWithParameters.find(static_cast<char>(c)) == std::string::npos) {
      Note("unknown command ESC " + HexBytes(&c, 1));
      return 2;
    }
    if (n < 3) return 0;
    const std::uint8_t v = p[2];
    switch (c) {
      case '!': MasterSelect(v); return 3;
      case '-': mode_.underline = (v & 1) != 0; return 3;
      case 'W': mode_.doubleWidth = (v & 1) != 0; return 3;
      case 'w': mode_.doubleHeight = (v & 1) != 0; return 3;
      case '3': mode_.lineSpacing = v; return 3;
      case 'A': mode_.lineSpacing = v * kPinUnits; return 3;
      case 'J': MoveDown(v); return 3;
      case 'C': SetPageLength(v); return 3;
      case 't': SelectTable(v); return 3;
      case 'x': return 3;  // draft or near letter quality: the same dots here
      case 'R': case 'U': case 'k': case 'l': case 'Q': case 'N': case 'O': return 3;
      case '$':
        if (n < 4) return 0;
        Position(p[2] + 256 * p[3]);
        return 4;
      case '*': return BitImage(p, n);
      case 'K': case 'L': case 'Y': case 'Z': return BitImageShort(p, n);
      default: return Extended(p, n);  // ESC (
    }
  }

  // --- settings ---

  void Initialise() {
    mode_ = Mode();
    pageLength_ = kDefaultPageLines * kDefaultSpacing;
    pageTop_ = y_;  // the form is taken to start where the paper stands
  }

  // ESC ! n: pitch, emphasis, double width, italic and underline in one byte.
  void MasterSelect(std::uint8_t v) {
    mode_.elite = v & 0x01;
    mode_.condensed = v & 0x04;
    mode_.emphasized = v & 0x08;
    mode_.doubleStrike = v & 0x10;
    mode_.doubleWidth = v & 0x20;
    mode_.italic = v & 0x40;
    mode_.underline = v & 0x80;
  }

  void SetPageLength(std::uint8_t lines) {
    if (lines == 0) {
      Note("page length 0 lines: kept the page as it was");
      return;
    }
    pageLength_ = std::max(1, lines * mode_.lineSpacing);
    pageTop_ = y_;
  }

  void SelectTable(std::uint8_t v) {
    // Table 1 is the graphics table (PC437); table 0 the italic one, drawn upright here.
    if (v != 0 && v != 1 && v != '0' && v != '1') Note("character table " + std::to_string(v) + " is not 0 or 1: kept PC437");
  }

  // --- characters ---

  int Pitch() const {
    // A 9-pin head cannot print emphasised characters condensed: emphasis wins.
    int pitch = mode_.elite ? kXUnits / 12 : kPica;
    if (mode_.condensed && !mode_.emphasized) pitch = mode_.elite ? kXUnits / 20 : kCondensed;
    return mode_.doubleWidth ? 2 * pitch : pitch;
  }

  void PrintCharacter(std::uint8_t b) {
    const int width = Pitch();
    if (x_ + width > kLineUnits) NewLine();  // the line is full: the printer goes on below
    const int left = x_ / kXUnitsPerDot, right = (x_ + width) / kXUnitsPerDot;
    const int height = Dots(mode_.doubleHeight ? 2 * kCharUnits : kCharUnits);
    GlyphStyle style;
    style.bold = mode_.emphasized || mode_.doubleStrike;
    style.italic = mode_.italic;
    const char32_t ch = static_cast<char32_t>(CodepageTranslator::Decode(CodepageTranslator::kPC437, b));
    Image cell = DrawGlyph(ch, right - left, height, style);
    if (mode_.underline) cell.FillRect(0, height - 1, cell.Width(), 1, kBlack);
    Put(cell, left);
    x_ += width;
  }

  void Tab() {
    const int step = kTabColumns * Pitch();
    const int next = (x_ / step + 1) * step;
    if (next < kLineUnits) x_ = next;
  }

  // ESC $ n: the print position n/60 inch from the left margin.
  void Position(int sixtieths) {
    const int x = sixtieths * (kXUnits / 60);
    if (x < kLineUnits) x_ = x;
  }

  // --- paper motion ---

  void NewLine() {
    x_ = 0;
    MoveDown(mode_.lineSpacing);
  }

  // Forward by units of 1/216 inch; each page boundary passed is marked, as the
  // perforation between two forms.
  void MoveDown(int units) {
    while (units > 0) {
      const int toBoundary = pageTop_ + pageLength_ - y_;
      const int step = std::min(units, toBoundary);
      Advance(step);
      units -= step;
      if (y_ == pageTop_ + pageLength_) {
        if (Printing()) paper_.Cut(CutKind::kPageEnd);
        pageTop_ = y_;
      }
    }
  }

  void FormFeed() {
    x_ = 0;
    if (y_ == pageTop_) {
      // At the top of a form already: the whole form comes out blank.
      MoveDown(pageLength_);
      return;
    }
    MoveDown(pageTop_ + pageLength_ - y_);
  }

  // A printer without paper (or stopped) moves nothing.
  void Advance(int units) {
    if (!Printing() || paper_.Full()) return;
    const int dots = Dots(y_ + units) - Dots(y_);
    if (!paper_.Feed(dots)) {
      notes_.Add("the paper reached its longest (" + std::to_string(kMaxImageHeight) + " dots): the rest is not drawn");
      return;
    }
    y_ += units;
  }

  void Put(const Image& picture, int xDots) {
    if (Printing()) paper_.Put(picture, xDots);
  }

  // --- bit images ---

  // The horizontal size of one column in each ESC * density (0 to 7), in 1/720 inch.
  static int ColumnUnits(std::uint8_t m) {
    static const int kUnits[] = {12, 6, 6, 3, 9, 10, 8, 5};  // 60, 120, 120, 240, 80, 72, 90, 144 dpi
    return m < 8 ? kUnits[m] : 0;
  }

  std::size_t BitImage(const std::uint8_t* p, std::size_t n) {
    if (n < 5) return 0;
    const std::uint8_t m = p[2];
    const std::size_t columns = p[3] + 256u * p[4];
    if (n < 5 + columns) return 0;
    if (ColumnUnits(m) == 0) {
      Note("bit image density " + std::to_string(m) + " is not 0 to 7: skipped");
      return 5 + columns;
    }
    DrawBand(p + 5, columns, ColumnUnits(m));
    return 5 + columns;
  }

  // ESC K, L, Y, Z: ESC * in densities 0, 1, 2 and 3.
  std::size_t BitImageShort(const std::uint8_t* p, std::size_t n) {
    if (n < 4) return 0;
    const std::size_t columns = p[2] + 256u * p[3];
    if (n < 4 + columns) return 0;
    static const std::string kLetters = "KLYZ";
    DrawBand(p + 4, columns, ColumnUnits(static_cast<std::uint8_t>(kLetters.find(static_cast<char>(p[1])))));
    return 4 + columns;
  }

  // One pass of the head: each byte a column of 8 pins, the top pin in the high bit.
  void DrawBand(const std::uint8_t* data, std::size_t columns, int columnUnits) {
    const int fit = std::max(0, (kLineUnits - x_) / columnUnits);
    const std::size_t shown = std::min<std::size_t>(columns, static_cast<std::size_t>(fit));
    if (shown < columns) Note("bit image wider than the line: its right part is not printed");
    if (shown == 0) return;
    const int left = x_ / kXUnitsPerDot;
    const int right = (x_ + static_cast<int>(shown) * columnUnits) / kXUnitsPerDot;
    Image band(std::max(1, right - left), Dots(8 * kPinUnits));
    for (std::size_t col = 0; col < shown; ++col) {
      const int x0 = (x_ + static_cast<int>(col) * columnUnits) / kXUnitsPerDot - left;
      const int x1 = std::max(x0 + 1, (x_ + static_cast<int>(col + 1) * columnUnits) / kXUnitsPerDot - left);
      for (int pin = 0; pin < 8; ++pin) {
        if (!(data[col] & (0x80 >> pin))) continue;
        const int y0 = Dots(pin * kPinUnits), y1 = Dots((pin + 1) * kPinUnits);
        band.FillRect(x0, y0, x1 - x0, y1 - y0, kBlack);
      }
    }
    Put(band, left);
    x_ += static_cast<int>(shown) * columnUnits;
  }

  // --- bar codes ---

  std::size_t Extended(const std::uint8_t* p, std::size_t n) {
    if (n < 5) return 0;
    const std::size_t length = p[3] + 256u * p[4];
    if (n < 5 + length) return 0;
    if (p[2] == 'B') Barcode(p + 5, length);
    else Note("unknown command ESC ( " + HexBytes(p + 2, 1));
    return 5 + length;
  }

  // ESC ( B: k kind, m module in dots, s space adjustment, v1 v2 bar length in 1/180
  // inch, c control (bit 1: no human-readable line), then the data.
  void Barcode(const std::uint8_t* p, std::size_t length) {
    if (length < 6) {
      Note("bar code ESC ( B with " + std::to_string(length) + " parameter bytes: at least 6 needed");
      return;
    }
    static const Symbology kKinds[] = {Symbology::kEan13, Symbology::kEan8, Symbology::kItf,
                                       Symbology::kUpcA,  Symbology::kUpcE, Symbology::kCode39,
                                       Symbology::kCode128};
    const std::uint8_t kind = p[0], module = p[1], control = p[5];
    const int barDots = p[3] + 256 * p[4];
    const std::string data(p + 6, p + length);
    if (kind >= std::size(kKinds)) {
      Note("bar code kind " + std::to_string(kind) + " is not known: skipped");
      return;
    }
    if (module < 2 || module > 5) {
      Note("bar code module " + std::to_string(module) + " is not 2 to 5 dots: skipped");
      return;
    }
    const Symbol symbol = Encode(kKinds[kind], data);
    if (!symbol.Ok()) {
      Note("bar code not printed: " + symbol.error + " (data \"" + data + "\")");
      return;
    }
    // Bars longer than a form would print over the perforation into the next: a garbled
    // length is held to one form.
    const Image bars = DrawBars(symbol, kKinds[kind], module, std::clamp(barDots, 1, Dots(pageLength_)));
    const int left = x_ / kXUnitsPerDot;
    if (left + bars.Width() > kPrintableDots) {
      Note("bar code \"" + data + "\" runs past the right margin: not printed");
      return;
    }
    const bool readable = (control & 0x02) == 0;
    const int cellWidth = kPica / kXUnitsPerDot;
    const Image text = readable ? DrawTextLine(symbol.text, cellWidth, Dots(kCharUnits), cellWidth) : Image();
    Image block(std::max(bars.Width(), text.Width()), bars.Height() + (readable ? kHriGapDots + text.Height() : 0));
    block.DrawOver(bars, 0, 0);
    if (readable) block.DrawOver(text, (bars.Width() - text.Width()) / 2, bars.Height() + kHriGapDots);
    Put(block, left);
    x_ += bars.Width() * kXUnitsPerDot;
  }


  Mode mode_;
  int x_ = 0;           // 1/720 inch from the left margin
  int y_ = 0;           // 1/216 inch from the top of the paper
  int pageTop_ = 0;     // where the current form began
  int pageLength_ = kDefaultPageLines * kDefaultSpacing;
};

}  // namespace

std::unique_ptr<Interpreter> MakeEscPPrinter(const ModelProfile& profile, PrinterLink link, Notes& notes) {
  (void)profile;
  (void)link;  // the printer has nothing to say
  return std::make_unique<EscPPrinter>(notes);
}

}  // namespace posprint::emulator
