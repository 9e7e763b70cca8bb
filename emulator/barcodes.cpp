#include "emulator/barcodes.h"

#include <zint.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <memory>

namespace posprint::emulator {
namespace {

bool AllDigits(const std::string& data) {
  return !data.empty() && std::all_of(data.begin(), data.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// The zint symbology for the data; 0 with *error set when the data does not fit the code.
int ZintSymbology(Symbology symbology, const std::string& data, std::string* error) {
  switch (symbology) {
    case Symbology::kUpcA: return data.size() == 12 ? BARCODE_UPCA_CHK : BARCODE_UPCA;
    case Symbology::kUpcE: return BARCODE_UPCE;
    case Symbology::kEan13:
      if (!AllDigits(data) || (data.size() != 12 && data.size() != 13)) {
        *error = "EAN-13 takes 12 or 13 digits";
        return 0;
      }
      return data.size() == 13 ? BARCODE_EANX_CHK : BARCODE_EANX;
    case Symbology::kEan8:
      if (!AllDigits(data) || (data.size() != 7 && data.size() != 8)) {
        *error = "EAN-8 takes 7 or 8 digits";
        return 0;
      }
      return data.size() == 8 ? BARCODE_EANX_CHK : BARCODE_EANX;
    case Symbology::kCode39: return BARCODE_CODE39;
    case Symbology::kItf:
      if (!AllDigits(data) || data.size() % 2 != 0) {
        *error = "interleaved 2 of 5 takes an even number of digits";
        return 0;
      }
      return BARCODE_C25INTER;
    case Symbology::kCodabar: return BARCODE_CODABAR;
    case Symbology::kCode93: return BARCODE_CODE93;
    case Symbology::kCode128: return BARCODE_CODE128;
    case Symbology::kQrCode: return BARCODE_QRCODE;
  }
  *error = "unknown symbology";
  return 0;
}

bool ZintModule(const zint_symbol& symbol, int row, int col) {
  return (symbol.encoded_data[row][col >> 3] >> (col & 7)) & 1;
}

}  // namespace

Symbol Encode(Symbology symbology, const std::string& data, QrLevel level) {
  Symbol out;
  if (data.empty()) {
    out.error = "no data";
    return out;
  }
  const int zintCode = ZintSymbology(symbology, data, &out.error);
  if (zintCode == 0) return out;
  std::unique_ptr<zint_symbol, void (*)(zint_symbol*)> symbol(ZBarcode_Create(), ZBarcode_Delete);
  if (!symbol) {
    out.error = "out of memory";
    return out;
  }
  symbol->symbology = zintCode;
  symbol->input_mode = DATA_MODE;
  if (symbology == Symbology::kQrCode) symbol->option_1 = static_cast<int>(level);
  const int result = ZBarcode_Encode(symbol.get(), reinterpret_cast<const unsigned char*>(data.data()),
                                     static_cast<int>(data.size()));
  if (result >= ZINT_ERROR) {
    out.error = symbol->errtxt;
    return out;
  }
  out.width = symbol->width;
  out.rows = symbol->rows;
  if (out.width <= 0 || out.rows <= 0 || out.width > 144 * 8 || out.rows > 200) {
    out = Symbol();
    out.error = "the symbol is too large";
    return out;
  }
  out.modules.resize(static_cast<std::size_t>(out.width) * out.rows);
  for (int row = 0; row < out.rows; ++row)
    for (int col = 0; col < out.width; ++col) out.modules[static_cast<std::size_t>(row) * out.width + col] = ZintModule(*symbol, row, col);
  out.text = reinterpret_cast<const char*>(symbol->text);
  // zint shows EAN and UPC digits with separators for its own layout; a printer prints them plain.
  out.text.erase(std::remove_if(out.text.begin(), out.text.end(), [](char c) { return c == ' ' || c == '>' || c == '<'; }),
                 out.text.end());
  return out;
}

Image DrawBars(const Symbol& symbol, Symbology symbology, int moduleDots, int heightDots, double wideRatio) {
  if (!symbol.Ok() || moduleDots <= 0 || heightDots <= 0) return Image();
  const bool redrawWide = wideRatio > 0 && (symbology == Symbology::kCode39 || symbology == Symbology::kItf);
  const int wideDots = redrawWide ? std::max(1, static_cast<int>(std::lround(wideRatio * moduleDots))) : 3 * moduleDots;
  // Walk the runs of equal modules (each run one bar or one space).
  std::vector<std::pair<bool, int>> runs;
  for (int col = 0; col < symbol.width;) {
    const bool dark = symbol.Dark(col, 0);
    int length = 0;
    while (col < symbol.width && symbol.Dark(col, 0) == dark) {
      ++length;
      ++col;
    }
    runs.emplace_back(dark, redrawWide && length == 3 ? wideDots : length * moduleDots);
  }
  long total = 0;
  for (const auto& run : runs) total += run.second;
  Image bars(static_cast<int>(std::min<long>(total, kMaxImageWidth)), heightDots);
  int x = 0;
  for (const auto& run : runs) {
    if (run.first) bars.FillRect(x, 0, run.second, heightDots, kBlack);
    x += run.second;
  }
  return bars;
}

Image DrawMatrix(const Symbol& symbol, int moduleDots) {
  if (!symbol.Ok() || moduleDots <= 0) return Image();
  Image out(symbol.width * moduleDots, symbol.rows * moduleDots);
  for (int row = 0; row < symbol.rows; ++row)
    for (int col = 0; col < symbol.width; ++col)
      if (symbol.Dark(col, row)) out.FillRect(col * moduleDots, row * moduleDots, moduleDots, moduleDots, kBlack);
  return out;
}

}  // namespace posprint::emulator
