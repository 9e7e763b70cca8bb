// The ESC/POS-family virtual printer: receipt (TMT70, VKP80II, TM300), slip (TM295) and
// ticket printers (STB112, STB60, STB80, Q-series).
//
// Like the real printers it works in standard mode: characters and bit images gather on
// the current line, which is printed when LF arrives (or when it is full); barcodes and
// raster images are printed as blocks of their own. DLE EOT status requests are answered
// the moment they arrive, wherever they stand in the stream, as the real printers do.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "emulator/barcodes.h"
#include "emulator/escpos_status.h"
#include "emulator/glyphs.h"
#include "emulator/strip_printer.h"
#include "platform/codepage.h"

namespace posprint::emulator {
namespace {

constexpr std::uint8_t ESC = 0x1B, GS = 0x1D, DLE = 0x10, FS = 0x1C, EOT = 0x04;
constexpr std::size_t kMaxBarcodeData = 255;  // GS k form 1: data up to the NUL
constexpr int kHriGap = 4;                    // dots between bars and their text
constexpr int kTabColumns = 8;
constexpr std::uint8_t kAck = 0x06;

// The print settings that ESC @ restores.
struct Mode {
  bool fontB = false;  // ESC ! bit 0, ESC M
  bool condensed = false;
  bool emphasized = false;
  bool doubleStrike = false;
  bool italic = false;
  int underline = 0;  // dots
  int widthMul = 1, heightMul = 1;
  bool reverse = false;
  bool upsideDown = false;
  bool rotated = false;
  int align = 0;  // 0 left, 1 centre, 2 right
  int lineSpacing = -1;  // -1: the model's default
  int rightSpacing = 0;
  std::uint8_t family = 0;  // ESC 0xC1 f
  int codePage = CodepageTranslator::kPC437;
  bool pc850 = false;  // the TM300's table 2: PC858 less the euro sign
  int hriPosition = 0;  // 0 none, 1 above, 2 below, 3 both
  int hriFont = 0;
  int barHeight = 162;
  int barModule = 3;
  int leftMargin = 0;
  int areaWidth = 65535;
};

struct LineItem {
  Image picture;
  int x;
};

class EscPosPrinter : public StripPrinter {
 public:
  EscPosPrinter(const ModelProfile& profile, PrinterLink link, Notes& notes)
      : StripPrinter(profile.rows[0].paperDots, profile.rows[0].printableDots, notes),
        profile_(profile),
        link_(std::move(link)),
        row_(&profile.rows[0]) {
    Initialise();
  }

 private:
  // --- bytes in ---

  void Answer(const std::optional<std::string>& answer) {
    if (answer && link_.answer) link_.answer(*answer);
  }

  // DLE EOT n is answered on arrival, even inside another command's data.
  void Arrived(std::uint8_t byte) override {
    if (realTime_ == 2) {
      realTime_ = 0;
      answeredFrom_ = Received() - 3;
      answeredTo_ = Received();
      const auto answer = DleEotAnswer(profile_.status, state_, byte);
      if (!answer && state_ != PrinterState::kSilent) notes_.Add("status request DLE EOT " + HexBytes(&byte, 1) + " is not known to this printer");
      Answer(answer);
      return;
    }
    if (realTime_ == 1 && byte == EOT) {
      realTime_ = 2;
      return;
    }
    realTime_ = byte == DLE ? 1 : 0;
  }

  std::size_t Parse(const std::uint8_t* p, std::size_t n) override {
    const std::uint8_t b = p[0];
    if (b >= 0x20) {
      PrintCharacter(b);
      return 1;
    }
    switch (b) {
      case 0x0A: PrintLine(); return 1;        // LF: print the line and feed
      case 0x0D:                               // CR: the line ends at LF, but on the PLUS
        if (profile_.carriageReturnFeeds) PrintLine();
        return 1;
      case 0x00: return 1;                     // NUL: nothing
      case 0x09: Tab(); return 1;              // HT
      case 0x0C: FormFeed(); return 1;         // FF
      case DLE: return ParseDle(p, n);
      case ESC: return ParseEsc(p, n);
      case GS: return ParseGs(p, n);
      case FS:
        if (n < 2) return 0;
        Note("unknown command FS " + HexBytes(p + 1, 1));
        return 2;
      default:
        // What is left of a status request that was answered on arrival, after another
        // command took its first bytes as parameters, is no news.
        if (CommandStart() < answeredTo_ && CommandStart() >= answeredFrom_) return 1;
        if (realTime_ != 0 && PendingBytes() == 1) return 1;  // a status request on its way in
        Note("stray control byte " + HexBytes(p, 1));
        return 1;
    }
  }

  std::size_t ParseDle(const std::uint8_t* p, std::size_t n) {
    if (n < 2) return 0;
    if (p[1] != EOT) {
      Note("unknown command DLE " + HexBytes(p + 1, 1));
      return 2;
    }
    return n < 3 ? 0 : 3;  // DLE EOT n: answered on arrival
  }

  std::size_t ParseEsc(const std::uint8_t* p, std::size_t n) {
    if (n < 2) return 0;
    const std::uint8_t c = p[1];
    // Commands of two bytes.
    switch (c) {
      case '@': Initialise(); return 2;
      case '2': mode_.lineSpacing = -1; return 2;
      case 'i': Cut(CutKind::kFull); return 2;
      case 'm': Cut(CutKind::kPartial); return 2;
      case 'v':
        if (!UsesEscV()) break;
        Answer(EscVAnswer(profile_.status, state_));
        return 2;
      case 'q':
        if (!profile_.slip) break;
        return 2;  // release the slip: nothing to draw
      case 0xC1:
        if (profile_.escC1TakesParameter) break;
        return 2;  // the STB family's end of a font selection
      default: break;
    }
    if (c == 'v' || c == 'q') {
      Note("unknown command ESC " + HexBytes(&c, 1));
      return 2;
    }
    if (n < 3) return 0;
    const std::uint8_t v = p[2];
    switch (c) {
      case '!': SetPrintMode(v); return 3;
      case 'E': mode_.emphasized = v & 1; return 3;
      case 'G': mode_.doubleStrike = v & 1; return 3;
      case '-': mode_.underline = (v == 1 || v == '1') ? 1 : (v == 2 || v == '2') ? 2 : 0; return 3;
      case 'M': mode_.fontB = v == 1 || v == '1'; return 3;
      case 'a': SetAlignment(v); return 3;
      case '{': mode_.upsideDown = v & 1; return 3;
      case 'V': mode_.rotated = v == 1 || v == '1' || v == 2 || v == '2'; return 3;
      case '3': mode_.lineSpacing = v; return 3;
      case ' ': mode_.rightSpacing = v; return 3;
      case 't': SelectCodeTable(v); return 3;
      case 'R': return 3;  // international character set: only the code table matters here
      case 'd': FeedLines(v); return 3;
      case 'J': FeedDots(v); return 3;
      case 'e': Reverse(v * LineSpacing()); return 3;
      case 'F':
        if (profile_.slip) return 3;  // slip ejection direction
        break;
      case 0xC1: mode_.family = v; return 3;
      case 0xF9:
        if (!profile_.scrambling) break;
        if (link_.scramble) link_.scramble(v);
        return 3;
      case '*': return BitImage(p, n);
      case '$': {
        if (n < 4) return 0;
        SetPenPosition(p[2] + 256 * p[3]);
        return 4;
      }
      case 'p': return n < 5 ? 0 : 5;  // drawer kick pulse
      case 'c': return n < 4 ? 0 : 4;  // paper sensor and panel settings
      case 'D': return TabStops(p, n);
      case '(': return ParenthesisCommand(p, n);
      default: break;
    }
    Note("unknown command ESC " + HexBytes(&c, 1));
    return 2;
  }

  bool UsesEscV() const {
    return profile_.status == StatusKind::kTm300 || profile_.status == StatusKind::kTm295 ||
           profile_.status == StatusKind::kStb60;
  }

  std::size_t ParseGs(const std::uint8_t* p, std::size_t n) {
    if (n < 2) return 0;
    const std::uint8_t c = p[1];
    if (profile_.settingFrames) {
      switch (c) {
        case 0xF4: PageEnd("ticket start"); return 2;
        case 0xF5: PageEnd("label end (software sensor)"); return 2;
        case 0xF6: PageEnd("ticket or label mark"); return 2;
        case 0xF8:
          FlushLine();
          Cut(CutKind::kFull);
          return 2;
        case 0xFF: return SettingFrame(p, n);
        default: break;
      }
    }
    if (n < 3) return 0;
    const std::uint8_t v = p[2];
    switch (c) {
      case '!':
        mode_.widthMul = ((v >> 4) & 7) + 1;
        mode_.heightMul = (v & 7) + 1;
        return 3;
      case 'B': mode_.reverse = v & 1; return 3;
      case 'H': mode_.hriPosition = (v <= 3 || (v >= '0' && v <= '3')) ? (v & 3) : mode_.hriPosition; return 3;
      case 'h': mode_.barHeight = v == 0 ? 1 : v; return 3;
      case 'w':
        if (v >= 1 && v <= 6) mode_.barModule = v;
        else Note("barcode module width " + std::to_string(v) + " is out of range 1-6: kept " + std::to_string(mode_.barModule));
        return 3;
      case 'f': mode_.hriFont = v & 1; return 3;
      case 'b': return 3;  // smoothing
      case 'k': return Barcode(p, n);
      case 'v':
        if (v == '0') return Raster(p, n);
        break;
      case 'V': return CutCommand(p, n);
      case 'P': return n < 4 ? 0 : 4;  // motion units
      case 'L':
        if (n < 4) return 0;
        mode_.leftMargin = p[2] + 256 * p[3];
        return 4;
      case 'W':
        if (n < 4) return 0;
        mode_.areaWidth = p[2] + 256 * p[3];
        return 4;
      case 'e':
        if (!profile_.presenter) break;
        if (n < 4) return 0;
        FlushLine();  // the presenter hands out the ticket
        return 4;
      case 'I':
        if (!profile_.identifies) break;
        Identify(v);
        return 3;
      default: break;
    }
    Note("unknown command GS " + HexBytes(&c, 1));
    return 2;
  }

  // --- settings ---

  void Initialise() {
    mode_ = Mode();
    mode_.barModule = profile_.barModule;
    line_.clear();
    penX_ = 0;
  }

  void SetPrintMode(std::uint8_t v) {
    mode_.fontB = v & 0x01;
    mode_.condensed = v & 0x04;
    mode_.emphasized = v & 0x08;
    mode_.heightMul = (v & 0x10) ? 2 : 1;
    mode_.widthMul = (v & 0x20) ? 2 : 1;
    mode_.italic = v & 0x40;
    mode_.underline = (v & 0x80) ? 1 : 0;
  }

  void SetAlignment(std::uint8_t v) {
    if (v <= 2 || (v >= '0' && v <= '2')) {
      mode_.align = v & 3;
      return;
    }
    Note("alignment " + std::to_string(v) + " is not 0, 1 or 2: ignored");
  }

  void SelectCodeTable(std::uint8_t n) {
    if (n == 0) {
      mode_.codePage = CodepageTranslator::kPC437;
      mode_.pc850 = false;
    } else if (n == profile_.pc858Table) {
      mode_.codePage = CodepageTranslator::kPC858;
      mode_.pc850 = n == 2;
    } else {
      Note("code table " + std::to_string(n) + " is not in this printer: kept the current one");
    }
  }

  std::size_t TabStops(const std::uint8_t* p, std::size_t n) {
    for (std::size_t i = 2; i < n && i < 2 + 33; ++i)
      if (p[i] == 0) return i + 1;
    if (n < 2 + 33) return 0;
    Note("ESC D: tab positions without their ending NUL");
    return 2;
  }

  std::size_t ParenthesisCommand(const std::uint8_t* p, std::size_t n) {
    if (n < 5) return 0;
    const std::size_t length = p[3] + 256u * p[4];
    if (profile_.settingFrames && p[2] == 'v' ) {
      // ESC ( v nL nH: feed by a signed count of dots (back when negative).
      FlushLine();
      const int dots = static_cast<std::int16_t>(p[3] | (p[4] << 8));
      if (dots >= 0) Advance(dots);
      else Reverse(-dots);
      return 5;
    }
    if (n < 5 + length) return 0;
    Note("unknown command ESC ( " + HexBytes(p + 2, 1));
    return 5 + length;
  }

  // GS 0xFF 0x0A 0x32 n v s: a setting, s the low byte of the sum of the six bytes before.
  std::size_t SettingFrame(const std::uint8_t* p, std::size_t n) {
    if (n < 7) return 0;
    if (p[2] != 0x0A || p[3] != 0x32) {
      Note("GS FF without the setting frame's 0A 32: ignored");
      return 2;
    }
    unsigned sum = 0;
    for (int i = 0; i < 6; ++i) sum += p[i];
    const std::uint8_t expected = static_cast<std::uint8_t>(sum & 0xFF);
    if (expected != p[6]) {
      Note("setting frame " + HexBytes(p, 7) + " has a wrong checksum (expected " + HexBytes(&expected, 1) +
           "): ignored");
      return 7;
    }
    ApplySetting(p[4], p[5]);
    return 7;
  }

  void ApplySetting(std::uint8_t setting, std::uint8_t value) {
    switch (setting) {
      case 0x01: {  // paper width: 1 the 80 mm roll, 0 the full width
        const Row* row = (value == 1 && profile_.rows[1].paperDots > 0) ? &profile_.rows[1] : &profile_.rows[0];
        if (row != row_) {
          if (paper_.SetWidth(row->paperDots, row->printableDots)) row_ = row;
          else Note("paper width changed after printing began: kept the paper as it was");
        }
        return;
      }
      case 0x09:  // mark sensor for tickets and labels; the printer confirms switching it on
        if (value == 1) Answer(std::string(1, static_cast<char>(kAck)));
        return;
      case 0x0A:  // label handling
      case 0x0F:  // print density
      case 0x10:  // ticket (0) or label (1) stock
        return;
      default:
        Note("setting " + HexBytes(&setting, 1) + " is not known to this printer");
    }
  }

  void Identify(std::uint8_t n) {
    if (n != 1 && n != '1') {
      Note("identification GS I " + HexBytes(&n, 1) + " is not answered by this printer");
      return;
    }
    if (state_ == PrinterState::kSilent) return;
    Answer(std::string(1, static_cast<char>(kQSeriesIdentification)));
    // Having told the terminal who it is, the printer takes up the scrambled mode.
    if (link_.scramble) link_.scramble(kFamilyScrambleKey);
  }

  // --- characters ---

  Cell BaseCell() const {
    switch (profile_.fonts) {
      case FontScheme::kEpson: return mode_.fontB ? row_->fontB : row_->fontA;
      case FontScheme::kCustom:
        if (mode_.family == 1) return row_->fontB;
        return mode_.fontB ? row_->fontA : row_->fontC;
      case FontScheme::kStb: return row_->fontA;
    }
    return row_->fontA;
  }

  int LineSpacing() const { return mode_.lineSpacing >= 0 ? mode_.lineSpacing : row_->lineSpacing; }
  int AreaLeft() const { return std::min(mode_.leftMargin, row_->printableDots - 1); }
  int AreaWidth() const { return std::max(1, std::min(mode_.areaWidth, row_->printableDots - AreaLeft())); }

  char32_t Decode(std::uint8_t b) const {
    if (mode_.pc850 && b == 0xD5) return U'\u0131';  // PC850 has the dotless i where PC858 has the euro
    return static_cast<char32_t>(CodepageTranslator::Decode(mode_.codePage, b));
  }

  Image Character(std::uint8_t b) const {
    const Cell base = BaseCell();
    int width = base.width * mode_.widthMul;
    const int height = base.height * mode_.heightMul;
    if (mode_.condensed) width = width * 3 / 4;
    GlyphStyle style;
    style.bold = mode_.emphasized || mode_.doubleStrike;
    style.italic = mode_.italic;
    Image glyph = DrawGlyph(Decode(b), width, height, style);
    const int spacing = mode_.rightSpacing * mode_.widthMul;
    Image cell(width + spacing, height);
    cell.DrawOver(glyph, 0, 0);
    if (mode_.underline) cell.FillRect(0, height - mode_.underline, cell.Width(), mode_.underline, kBlack);
    if (mode_.reverse) cell = cell.Inverted();
    if (mode_.rotated) cell = cell.RotatedClockwise();
    return cell;
  }

  void PrintCharacter(std::uint8_t b) { AddToLine(Character(b)); }

  void AddToLine(const Image& picture) {
    if (penX_ > 0 && penX_ + picture.Width() > AreaWidth()) PrintLine();  // the line is full
    line_.push_back({picture, penX_});
    penX_ += picture.Width();
  }

  void Tab() {
    const int step = kTabColumns * row_->fontA.width;
    const int next = (penX_ / step + 1) * step;
    if (next >= AreaWidth()) {
      PrintLine();
      return;
    }
    penX_ = next;
  }

  void SetPenPosition(int x) {
    if (x < AreaWidth()) penX_ = x;
  }

  // --- lines and blocks ---

  // Prints the gathered line (when there is one) and feeds: by the line spacing, or by
  // the line's height when that is more.
  void PrintLine() {
    const int height = LineHeight();
    if (height > 0) PutLine(height);
    Advance(std::max(LineSpacing(), height));
    ClearLine();
  }

  // Prints what is gathered without feeding more than its own height.
  void FlushLine() {
    if (line_.empty()) {
      penX_ = 0;
      return;
    }
    const int height = LineHeight();
    PutLine(height);
    Advance(height);
    ClearLine();
  }

  int LineHeight() const {
    int height = 0;
    for (const LineItem& item : line_) height = std::max(height, item.picture.Height());
    return height;
  }

  void ClearLine() {
    line_.clear();
    penX_ = 0;
  }

  int AlignedX(int width) const {
    const int room = AreaWidth() - width;
    if (room <= 0 || mode_.align == 0) return AreaLeft();
    return AreaLeft() + (mode_.align == 1 ? room / 2 : room);
  }

  void PutLine(int height) {
    Image line(AreaWidth(), height);
    for (const LineItem& item : line_) line.DrawOver(item.picture, item.x, height - item.picture.Height());
    const int contentWidth = std::min(penX_, AreaWidth());
    Image content = line.Crop(0, 0, contentWidth, height);
    int x = AlignedX(contentWidth);
    if (mode_.upsideDown) {
      // The whole line turned half round: what stood on the left now stands on the right.
      content = content.Rotated180();
      x = AreaLeft() + AreaLeft() + AreaWidth() - x - contentWidth;
      x = std::max(AreaLeft(), x);
    }
    if (Printing()) paper_.Put(content, x);
  }

  void PutBlock(const Image& block) {
    FlushLine();
    if (Printing()) paper_.Put(block, AlignedX(block.Width()));
    Advance(block.Height());
  }

  void FeedLines(int lines) {
    if (!line_.empty()) {
      PrintLine();
      --lines;
    }
    if (lines > 0) Advance(lines * LineSpacing());
  }

  void FeedDots(int dots) {
    const int height = LineHeight();
    if (height > 0) PutLine(height);
    ClearLine();
    Advance(std::max(dots, height));
  }

  void Advance(int dots) {
    if (!Printing() || dots <= 0) return;
    if (!paper_.Feed(dots) && !paperFullNoted_) {
      paperFullNoted_ = true;
      notes_.Add("the paper strip reached its longest (" + std::to_string(kMaxImageHeight) + " dots): the rest is not drawn");
    }
  }

  void Reverse(int dots) {
    if (Printing() && dots > 0) paper_.Feed(-dots);
  }

  void Cut(CutKind kind) {
    FlushLine();
    if (Printing()) paper_.Cut(kind);
  }

  void PageEnd(const char* what) {
    (void)what;
    FlushLine();
    if (Printing()) paper_.Cut(CutKind::kPageEnd);
  }

  void FormFeed() {
    if (profile_.slip) {
      PageEnd("slip ejected");
      return;
    }
    PrintLine();
  }

  std::size_t CutCommand(const std::uint8_t* p, std::size_t n) {
    const std::uint8_t m = p[2];
    if (m == 0 || m == '0') {
      Cut(CutKind::kFull);
      return 3;
    }
    if (m == 1 || m == '1') {
      Cut(CutKind::kPartial);
      return 3;
    }
    if (m == 65 || m == 66) {
      // GS V m n: feed n dots, then cut
      if (n < 4) return 0;
      FlushLine();
      Advance(p[3]);
      Cut(m == 65 ? CutKind::kFull : CutKind::kPartial);
      return 4;
    }
    Note("cut GS V " + HexBytes(&m, 1) + " is not known: no cut");
    return 3;
  }

  // --- pictures ---

  // ESC * m nL nH d1..dk: a bit image on the current line, 8 or 24 dots high.
  std::size_t BitImage(const std::uint8_t* p, std::size_t n) {
    if (n < 5) return 0;
    const std::uint8_t m = p[2];
    const int columns = p[3] + 256 * p[4];
    int bytesPerColumn, sx, sy;
    switch (m) {
      case 0: bytesPerColumn = 1, sx = 2, sy = 3; break;   // 8-dot single density
      case 1: bytesPerColumn = 1, sx = 1, sy = 3; break;   // 8-dot double density
      case 32: bytesPerColumn = 3, sx = 2, sy = 1; break;  // 24-dot single density
      case 33: bytesPerColumn = 3, sx = 1, sy = 1; break;  // 24-dot double density
      default:
        Note("bit image mode " + std::to_string(m) + " is not 0, 1, 32 or 33: ignored");
        return 3;
    }
    const std::size_t length = static_cast<std::size_t>(columns) * bytesPerColumn;
    if (n < 5 + length) return 0;
    const std::uint8_t* data = p + 5;
    const int visible = std::min(columns, (AreaWidth() + sx - 1) / sx);
    Image band(visible, 8 * bytesPerColumn);
    for (int col = 0; col < visible; ++col)
      for (int k = 0; k < bytesPerColumn; ++k)
        for (int bit = 0; bit < 8; ++bit)
          if (data[col * bytesPerColumn + k] & (0x80 >> bit)) band.Set(col, k * 8 + bit, kBlack);
    if (visible < columns) Note("bit image wider than the paper: its right part is not printed");
    if (!band.Empty()) AddToLine(band.Scaled(sx, sy));
    return 5 + length;
  }

  // GS v 0 m xL xH yL yH d1..dk: a raster image, x bytes by y rows.
  std::size_t Raster(const std::uint8_t* p, std::size_t n) {
    if (n < 8) return 0;
    const std::uint8_t m = p[3];
    const int bytesWide = p[4] + 256 * p[5];
    const int rows = p[6] + 256 * p[7];
    const std::size_t length = static_cast<std::size_t>(bytesWide) * rows;
    if (n < 8 + length) return 0;
    if (!(m <= 3 || (m >= '0' && m <= '3'))) {
      Note("raster mode " + std::to_string(m) + " is not 0 to 3: image skipped");
      return 8 + length;
    }
    const int sx = (m & 1) ? 2 : 1, sy = (m & 2) ? 2 : 1;
    const std::uint8_t* data = p + 8;
    const int dotsWide = std::min(bytesWide * 8, (AreaWidth() + sx - 1) / sx);
    if (dotsWide < bytesWide * 8) Note("raster image wider than the paper: its right part is not printed");
    Image picture(dotsWide, std::min(rows, kMaxImageHeight));
    for (int y = 0; y < picture.Height(); ++y)
      for (int x = 0; x < dotsWide; ++x)
        if (data[static_cast<std::size_t>(y) * bytesWide + x / 8] & (0x80 >> (x % 8))) picture.Set(x, y, kBlack);
    if (!picture.Empty()) PutBlock(picture.Scaled(sx, sy));
    return 8 + length;
  }

  // --- barcodes ---

  std::size_t Barcode(const std::uint8_t* p, std::size_t n) {
    const std::uint8_t m = p[2];
    std::string data;
    std::size_t used;
    bool formTwo;
    if (m <= 8) {
      // Form 1: the data ends with NUL.
      const std::uint8_t* end = std::find(p + 3, p + std::min(n, 3 + kMaxBarcodeData + 1), 0);
      if (end == p + std::min(n, 3 + kMaxBarcodeData + 1)) {
        if (n < 3 + kMaxBarcodeData + 1) return 0;
        Note("barcode GS k " + HexBytes(&m, 1) + ": no NUL within " + std::to_string(kMaxBarcodeData) + " bytes: not printed");
        return 3;
      }
      data.assign(p + 3, end);
      used = static_cast<std::size_t>(end - p) + 1;
      formTwo = false;
    } else if (m >= 65 && m <= 73) {
      // Form 2: a count, then the data.
      if (n < 4) return 0;
      used = 4 + p[3];
      if (n < used) return 0;
      data.assign(p + 4, p + used);
      formTwo = true;
    } else {
      Note("barcode system GS k " + HexBytes(&m, 1) + " is not known: skipped");
      return 3;
    }
    PrintBarcode(m, data, formTwo);
    return used;
  }

  bool SymbologyOf(std::uint8_t m, Symbology* symbology) const {
    static const Symbology kForm[] = {Symbology::kUpcA, Symbology::kUpcE, Symbology::kEan13, Symbology::kEan8,
                                      Symbology::kCode39, Symbology::kItf, Symbology::kCodabar,
                                      Symbology::kCode93, Symbology::kCode128};
    const int index = m >= 65 ? m - 65 : m;
    if (index == 7 && m < 65) return false;  // form 1 has no 7
    if (index < 0 || index > 8) return false;
    *symbology = kForm[index];
    return true;
  }

  // Code 128 data begins with its code set ("{A", "{B", "{C"); "{{" stands for "{".
  // In form 2, code set C takes one byte a pair of digits.
  bool Code128Content(const std::string& data, bool formTwo, std::string* content, std::string* problem) const {
    char set = 'B';
    std::size_t i = 0;
    if (data.size() >= 2 && data[0] == '{' && (data[1] == 'A' || data[1] == 'B' || data[1] == 'C')) {
      set = data[1];
      i = 2;
    } else if (formTwo) {
      *problem = "Code 128 data must begin with {A, {B or {C";
      return false;
    }
    for (; i < data.size(); ++i) {
      const unsigned char c = static_cast<unsigned char>(data[i]);
      if (c == '{' && i + 1 < data.size()) {
        const char next = data[++i];
        if (next == '{') *content += '{';
        else if (next == 'A' || next == 'B' || next == 'C') set = next;
        // FNC and SHIFT codes carry nothing a reader shows
        continue;
      }
      if (set == 'C' && formTwo) {
        if (c > 99) {
          *problem = "Code 128 code set C byte above 99";
          return false;
        }
        *content += static_cast<char>('0' + c / 10);
        *content += static_cast<char>('0' + c % 10);
      } else {
        *content += static_cast<char>(c);
      }
    }
    return true;
  }

  void PrintBarcode(std::uint8_t m, const std::string& data, bool formTwo) {
    Symbology symbology;
    if (!SymbologyOf(m, &symbology)) {
      Note("barcode system GS k " + HexBytes(&m, 1) + " is not known: skipped");
      return;
    }
    std::string content = data, problem;
    if (symbology == Symbology::kCode128) {
      content.clear();
      Code128Content(data, formTwo, &content, &problem);
    }
    if (symbology == Symbology::kCode39 && content.size() >= 2 && content.front() == '*' && content.back() == '*')
      content = content.substr(1, content.size() - 2);
    Symbol symbol;
    if (problem.empty()) symbol = Encode(symbology, content);
    if (!problem.empty() || !symbol.Ok()) {
      Note("barcode not printed: " + (problem.empty() ? symbol.error : problem) + " (data \"" + Printable(data) + "\")");
      return;
    }
    Image bars = DrawBars(symbol, symbology, mode_.barModule, mode_.barHeight);
    if (bars.Width() > AreaWidth()) {
      Note("barcode \"" + Printable(data) + "\" is wider than the paper: not printed");
      return;
    }
    const Image text = HriLine(symbol.text);
    const bool above = mode_.hriPosition & 1, below = mode_.hriPosition & 2;
    const int width = std::max(bars.Width(), text.Width());
    const int height = bars.Height() + (above ? text.Height() + kHriGap : 0) + (below ? text.Height() + kHriGap : 0);
    Image block(width, height);
    int y = 0;
    if (above) {
      block.DrawOver(text, (width - text.Width()) / 2, y);
      y += text.Height() + kHriGap;
    }
    block.DrawOver(bars, (width - bars.Width()) / 2, y);
    y += bars.Height() + kHriGap;
    if (below) block.DrawOver(text, (width - text.Width()) / 2, y);
    PutBlock(block);
  }

  Image HriLine(const std::string& text) const {
    const Cell cell = mode_.hriFont ? row_->fontB : row_->fontA;
    return DrawTextLine(text, cell.width, cell.height, cell.width);
  }

  static std::string Printable(const std::string& data) {
    std::string out;
    for (unsigned char c : data) {
      if (c >= 0x20 && c < 0x7F) out += static_cast<char>(c);
      else out += "\\x" + HexBytes(&c, 1);
    }
    return out;
  }

  const ModelProfile& profile_;
  PrinterLink link_;
  const Row* row_;
  Mode mode_;
  std::vector<LineItem> line_;
  int penX_ = 0;
  int realTime_ = 0;
  std::size_t answeredFrom_ = 0, answeredTo_ = 0;  // the bytes of the last status request answered
  bool paperFullNoted_ = false;
};

}  // namespace

std::unique_ptr<Interpreter> MakeEscPosPrinter(const ModelProfile& profile, PrinterLink link, Notes& notes) {
  return std::make_unique<EscPosPrinter>(profile, std::move(link), notes);
}

}  // namespace posprint::emulator
