#include "drivers/receipt/family/family_commands.h"

#include "frame/output.h"
#include "platform/codepage.h"

namespace ReceiptFamily {

void ReadRollConfig(const IParameterCollection& keys, const RollConfigKeys& model, RollConfig& config) {
  config.ejectFeedLines = model.feedDefault;
  if (ParameterText(keys, model.feedKey).Upper() == L"FALSE") config.ejectFeedLines = 0;
  config.ignoreNearEnd = ParameterText(keys, model.nearEndKey).Upper() == L"FALSE" ? 1 : 0;
  config.ignorePaperEnd = ParameterText(keys, model.paperEndKey).Upper() == L"FALSE" ? 1 : 0;
  config.cutMode = 0;
  const Nx_Stringa cut = ParameterText(keys, model.cutKey);
  for (const CutWord& row : model.cutWords) {
    if (row.word && cut == row.word) {
      config.cutMode = row.cutMode;
      if (model.cutRestoresFeeds) config.ejectFeedLines = model.feedDefault;
    }
  }
}

PrinterResult SelectCodePageBy(const PortContext& ctx, int codePage, const CodePageBytes& table) {
  std::uint8_t n;
  if (codePage == CodepageTranslator::kPC437) {
    n = table.pc437;
  } else if (codePage == CodepageTranslator::kPC858) {
    n = table.pc858;
  } else {
    return kFailure;
  }
  // ESC t n: character code table
  const unsigned char command[] = {0x1B, 0x74, n};
  return WriteBytes(ctx, command, sizeof command);
}

PrinterResult SelectFontBy(PortContext& ctx, const TextAttributes& attributes, const FontTable& table) {
  const FontRow& font = attributes.font == kFontSmall   ? table.small
                        : attributes.font == kFontLarge ? table.large
                                                        : table.normal;
  ctx.lineWidth = font.charsPerLine;
  if (table.familyCommand) {
    // ESC 0xC1 f: font family (0 normal, 1 small)
    const unsigned char family[] = {0x1B, 0xC1, font.family};
    if (WriteBytes(ctx, family, sizeof family) != kSuccess) return kFailure;
  }

  std::uint8_t mode = font.mode;
  const int style = attributes.style - kStyleCursiveUnderline;
  if (style >= 0 && style < 10) mode |= table.style[style];

  int height = attributes.height;
  int width = attributes.width;
  if (table.clampToDouble) {
    if (height > kHeight2) height = kHeight2;
    if (width > kWidth2) width = kWidth2;
  }
  if (height == kHeight2) mode |= 0x10;
  if (width == kWidth2) mode |= 0x20;
  // Wider characters leave fewer on a line, also where the printer enlarges nothing.
  if (width - 40 > 1) ctx.lineWidth /= (width - 40);

  // ESC ! n: print mode (bit 0 small font, bit 2 compressed, bit 3 emphasis, bit 4 double
  // height, bit 5 double width, bit 6 italic, bit 7 underline)
  const unsigned char command[] = {0x1B, 0x21, mode};
  return WriteBytes(ctx, command, sizeof command);
}

int DecodeStatus(const std::uint8_t* reply, const StatusRule* rules, int ruleCount, bool ignoreNearEnd,
                 bool ignorePaperEnd) {
  for (int i = 0; i < ruleCount; ++i) {
    const StatusRule& rule = rules[i];
    if (!(reply[rule.byte] & rule.mask)) continue;
    if (rule.silencedBy == Sensor::kNearEnd && ignoreNearEnd) continue;
    if (rule.silencedBy == Sensor::kPaperEnd && ignorePaperEnd) continue;
    return rule.status;
  }
  return kStatusReady;
}

void FeedOneByOne(const PortContext& ctx, int count) {
  for (int i = 0; i < count; ++i) WriteBytes(ctx, "\x0A", 1);  // LF
}

PrinterResult PrintBitImageLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp,
                                std::uint8_t lineSpacing) {
  // ESC 3 n: line spacing n motion units, one 8-dot band high on these printers
  const unsigned char spacing[] = {0x1B, 0x33, lineSpacing};
  WriteBytes(ctx, spacing, sizeof spacing);
  PrinterResult result = PrintBitmap(ctx, bmp, false, 0);  // ESC * 0: 8-dot single density
  WriteBytes(ctx, "\x1B\x32", 2);                          // ESC 2: default line spacing
  return result;
}

}  // namespace ReceiptFamily
