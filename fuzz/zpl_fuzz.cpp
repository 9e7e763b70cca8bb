// The ZPL command layer on arbitrary data: barcode and QR data encoding ({hh} escapes,
// _hh field escapes, the byte count), and the text layouts on arbitrary texts and line
// widths. Checked besides the sanitizers: the escapes decode back to the data, and no
// command is ever sent that does not fit the command buffer.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "drivers/label/ZEBRA/zpl.h"
#include "fuzz/fuzz_support.h"
#include "platform/otool.h"

namespace {

// Undoes the _hh field escapes of ^FH.
std::string Unescape(const std::string& text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '_' && i + 2 < text.size()) {
      plain += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else {
      plain += text[i];
    }
  }
  return plain;
}

void Check(bool condition) {
  if (!condition) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  posprint::fuzz::InitialiseHarness();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace ZEBRA;
  posprint::fuzz::Input input(data, size);
  const int type = input.Byte() % 16;
  const int height = static_cast<std::int8_t>(input.Byte());
  const int moduleWidth = static_cast<std::int8_t>(input.Byte());
  const float ratio = input.Byte() / 32.0f;
  const std::uint8_t humanReadable = input.Byte() & 1;
  const std::uint32_t charsPerLine = input.Byte() * 4u;
  const char fill = static_cast<char>(input.Byte());
  const std::string text = input.Rest();

  // The two passes of QR data.
  std::string decoded = text;
  const std::size_t count = zpl_DecodeBraceEscapes(decoded);
  Check(count == decoded.size() && count <= text.size());
  const std::string escaped = zpl_FieldHexEscape(decoded);
  for (char c : escaped) Check(static_cast<unsigned char>(c) >= 0x20 || c == '\t');
  Check(Unescape(escaped) == decoded);

  posprint::ScriptedPort port;
  auto state = std::make_unique<ZplState>();
  state->charsPerLine = charsPerLine;
  PortContext ctx;
  ctx.handle = otool_OPEN(port.Name().c_str(), 0, nullptr);
  ctx.config = state.get();
  ctx.SetTerminator("\r\n");

  std::string barcodeData = text;
  zpl_Barcode(ctx, barcodeData, type, height, moduleWidth, ratio, humanReadable);
  const std::size_t half = text.size() / 2;
  const std::string_view left(text.data(), half), right(text.data() + half, text.size() - half);
  zpl_TwoColumns(ctx, left, right);
  zpl_ThreePart(ctx, left, right, fill);
  zpl_Centred(ctx, text);
  zpl_TextLine(ctx, text, humanReadable, static_cast<std::uint8_t>(type & 1));
  zpl_FillLine(ctx, text);
  zpl_RecallLogo(ctx, Nx_Stringa::FromUtf8(text));
  for (const std::string& write : port.Writes()) Check(write.size() < kZplCommandBufferSize);
  otool_CLOSE(ctx.handle);
  return 0;
}
