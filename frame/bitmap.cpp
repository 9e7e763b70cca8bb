// A 1-bit BMP printed as ESC * bit-image bands: each band is a run of columns, one byte
// (8-dot band) or three bytes (24-dot band) a column, the most significant bit the top dot.
//
// A band is built eight dot rows at a time: the same byte position of eight rows holds
// an 8 x 8 block of dots, and its transpose is the eight column bytes of those dots. The
// blocks are taken eight at a time from 64-bit words of the rows, so that converting a
// logo costs a few instructions a block instead of a few a dot; the printer cannot tell:
// it receives the same bytes.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "frame/bmp.h"
#include "frame/output.h"

namespace {

constexpr int kMaxBandDots = 24;

// Eight bytes of a row (fewer at its end), byte j at bits 8j..8j+7.
std::uint64_t Load64(const std::uint8_t* bytes, std::size_t count) {
  std::uint64_t word = 0;
  if (count == 8) {
    std::memcpy(&word, bytes, 8);  // one load
  } else {
    std::memcpy(&word, bytes, count);
  }
  return __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? word : __builtin_bswap64(word);
}

// Swaps the bits selected by mask between the words a and b, b's shifted by `shift`.
inline void SwapBits(std::uint64_t& a, std::uint64_t& b, int shift, std::uint64_t mask) {
  const std::uint64_t t = ((a >> shift) ^ b) & mask;
  b ^= t;
  a ^= t << shift;
}

// w[k] holds eight bytes of row k (byte j at bits 8j); afterwards w[j] holds byte j of
// the eight rows (row k at bits 8k): an 8 x 8 byte transpose.
void TransposeBytes(std::uint64_t (&w)[8]) {
  for (int k = 0; k < 4; ++k) SwapBits(w[k], w[k + 4], 32, 0x00000000FFFFFFFFull);
  for (int k : {0, 1, 4, 5}) SwapBits(w[k], w[k + 2], 16, 0x0000FFFF0000FFFFull);
  for (int k : {0, 2, 4, 6}) SwapBits(w[k], w[k + 1], 8, 0x00FF00FF00FF00FFull);
}

// x holds eight rows of one byte position, the top row in the most significant byte and
// each row's leftmost dot in its most significant bit. Returns the eight columns the same
// way: the leftmost column in the most significant byte, its top dot in the byte's most
// significant bit (an 8 x 8 bit transpose).
inline std::uint64_t TransposeBits(std::uint64_t x) {
  std::uint64_t t = (x ^ (x >> 7)) & 0x00AA00AA00AA00AAull;
  x ^= t ^ (t << 7);
  t = (x ^ (x >> 14)) & 0x0000CCCC0000CCCCull;
  x ^= t ^ (t << 14);
  t = (x ^ (x >> 28)) & 0x00000000F0F0F0F0ull;
  x ^= t ^ (t << 28);
  return x;
}

class BandBuilder {
 public:
  BandBuilder(const BmpImage& image, int bandDots, bool doubleHeight)
      : width_(image.width), rowBytes_(image.rowBytes), bytesPerColumn_(bandDots / 8), bandDots_(bandDots),
        dotsPerRow_(doubleHeight ? 2 : 1) {}

  // The band's columns; false when there is no memory for them.
  bool Allocate() {
    try {
      cells_.assign(static_cast<std::size_t>(width_) * static_cast<std::size_t>(bytesPerColumn_), 0);
    } catch (const std::bad_alloc&) {
      return false;
    }
    return true;
  }

  // Adds one stored row under the dots already in the band (twice with double height).
  void AddRow(const std::uint8_t* pixels) {
    for (int i = 0; i < dotsPerRow_; ++i) rows_[filled_++] = pixels;
  }

  bool Full() const { return filled_ == bandDots_; }
  bool Empty() const { return filled_ == 0; }

  // Header, columns and terminator; then the band starts again empty. The dots below the
  // last row of a partly filled band are blank.
  PrinterResult Send(const PortContext& ctx, const unsigned char (&header)[5]) {
    for (int group = 0; group < bytesPerColumn_; ++group) BuildGroup(group);
    filled_ = 0;
    if (WriteBytes(ctx, header, sizeof header) != kSuccess) return kFailure;
    if (WriteBytes(ctx, cells_.data(), cells_.size()) != kSuccess) return kFailure;
    return WriteBytes(ctx, ctx.terminator, static_cast<std::size_t>(ctx.TerminatorLength()));
  }

 private:
  // The column bytes of dot rows 8 x group .. 8 x group + 7 of the band.
  void BuildGroup(int group) {
    const std::uint8_t* const* rows = rows_ + 8 * group;
    const int present = std::clamp(filled_ - 8 * group, 0, 8);
    std::uint32_t at = 0;
#if defined(__SSE2__)
    if (bytesPerColumn_ == 1 && present == 8) at = BuildColumns16(rows);
#endif
    for (; at < rowBytes_; at += 8) {
      const std::size_t count = std::min<std::size_t>(8, rowBytes_ - at);
      std::uint64_t w[8];
      // A 0 pixel in the file is black, and a black dot is a set bit for the printer.
      for (int k = 0; k < 8; ++k) w[k] = k < present ? ~Load64(rows[k] + at, count) : 0;
      TransposeBytes(w);
      for (std::size_t j = 0; j < count; ++j) {
        // Row k in byte 7 - k, the top row in the most significant byte.
        const std::uint64_t columns = TransposeBits(__builtin_bswap64(w[j]));
        StoreColumns(static_cast<int>(8 * (at + j)), columns, group);
      }
    }
  }

#if defined(__SSE2__)
  // The same for a whole 8-dot band, sixteen byte positions (128 columns) at a time, with
  // the x86 vector unit: the eight rows' bytes are interleaved so that each byte position
  // holds its eight rows, and two blocks at a time are transposed as above.
  // Returns the byte position where the caller goes on (the row's last, partial run).
  std::uint32_t BuildColumns16(const std::uint8_t* const* rows) {
    std::uint32_t at = 0;
    const __m128i ones = _mm_set1_epi8(static_cast<char>(0xFF));
    for (; at + 16 <= rowBytes_ && 8 * (at + 16) <= static_cast<std::uint32_t>(width_); at += 16) {
      __m128i r[8];
      // The bottom row first, so that the top row ends in each group's last byte, and so
      // in each mask's most significant bit. A 0 pixel in the file is a black dot.
      for (int k = 0; k < 8; ++k) {
        r[k] = _mm_xor_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[7 - k] + at)), ones);
      }
      const __m128i a0 = _mm_unpacklo_epi8(r[0], r[1]), a1 = _mm_unpackhi_epi8(r[0], r[1]);
      const __m128i a2 = _mm_unpacklo_epi8(r[2], r[3]), a3 = _mm_unpackhi_epi8(r[2], r[3]);
      const __m128i a4 = _mm_unpacklo_epi8(r[4], r[5]), a5 = _mm_unpackhi_epi8(r[4], r[5]);
      const __m128i a6 = _mm_unpacklo_epi8(r[6], r[7]), a7 = _mm_unpackhi_epi8(r[6], r[7]);
      const __m128i b0 = _mm_unpacklo_epi16(a0, a2), b1 = _mm_unpackhi_epi16(a0, a2);
      const __m128i b2 = _mm_unpacklo_epi16(a1, a3), b3 = _mm_unpackhi_epi16(a1, a3);
      const __m128i b4 = _mm_unpacklo_epi16(a4, a6), b5 = _mm_unpackhi_epi16(a4, a6);
      const __m128i b6 = _mm_unpacklo_epi16(a5, a7), b7 = _mm_unpackhi_epi16(a5, a7);
      // Each holds two byte positions, its eight rows in each half.
      const __m128i pairs[8] = {_mm_unpacklo_epi32(b0, b4), _mm_unpackhi_epi32(b0, b4),
                                _mm_unpacklo_epi32(b1, b5), _mm_unpackhi_epi32(b1, b5),
                                _mm_unpacklo_epi32(b2, b6), _mm_unpackhi_epi32(b2, b6),
                                _mm_unpacklo_epi32(b3, b7), _mm_unpackhi_epi32(b3, b7)};
      for (int p = 0; p < 8; ++p) {
        // Both halves are an 8 x 8 block, the top row in the most significant byte: the
        // bit transpose of TransposeBits on the two at once, then each half's bytes
        // reversed so that the leftmost column comes first in memory.
        __m128i x = pairs[p];
        __m128i t = _mm_and_si128(_mm_xor_si128(x, _mm_srli_epi64(x, 7)), _mm_set1_epi64x(0x00AA00AA00AA00AAll));
        x = _mm_xor_si128(x, _mm_xor_si128(t, _mm_slli_epi64(t, 7)));
        t = _mm_and_si128(_mm_xor_si128(x, _mm_srli_epi64(x, 14)), _mm_set1_epi64x(0x0000CCCC0000CCCCll));
        x = _mm_xor_si128(x, _mm_xor_si128(t, _mm_slli_epi64(t, 14)));
        t = _mm_and_si128(_mm_xor_si128(x, _mm_srli_epi64(x, 28)), _mm_set1_epi64x(0x00000000F0F0F0F0ll));
        x = _mm_xor_si128(x, _mm_xor_si128(t, _mm_slli_epi64(t, 28)));
        x = _mm_or_si128(_mm_slli_epi16(x, 8), _mm_srli_epi16(x, 8));  // bytes swapped in each word
        x = _mm_shufflehi_epi16(_mm_shufflelo_epi16(x, 0x1B), 0x1B);   // words reversed in each half
        _mm_storeu_si128(reinterpret_cast<__m128i*>(cells_.data() + 8 * (at + 2 * p)), x);
      }
    }
    return at;
  }
#endif

  // The eight columns from x onwards (those inside the picture), most significant first.
  void StoreColumns(int x, std::uint64_t columns, int group) {
    const int count = std::min(8, width_ - x);
    if (bytesPerColumn_ == 1 && count == 8) {
      // The leftmost column first in memory.
      const std::uint64_t inOrder = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? __builtin_bswap64(columns) : columns;
      std::memcpy(cells_.data() + x, &inOrder, 8);
      return;
    }
    for (int c = 0; c < count; ++c) {
      cells_[static_cast<std::size_t>(x + c) * bytesPerColumn_ + group] =
          static_cast<std::uint8_t>(columns >> (56 - 8 * c));
    }
  }

  int width_;
  std::uint32_t rowBytes_;
  int bytesPerColumn_, bandDots_, dotsPerRow_;
  int filled_ = 0;                                    // dot rows in the band
  const std::uint8_t* rows_[kMaxBandDots] = {};       // the stored row of each dot row
  std::vector<std::uint8_t> cells_;
};

}  // namespace

PrinterResult PrintBitmap(const PortContext& ctx, const std::vector<std::uint8_t>& bmp, bool doubleHeight,
                          std::uint8_t mode) {
  BmpImage image;
  switch (ReadMonoBmp(bmp, image)) {
    case BmpCheck::kNotBitmap: return kSuccess;  // not a picture: skipped without complaint
    case BmpCheck::kNotMono:
    case BmpCheck::kMalformed: return kFailure;
    case BmpCheck::kOk: break;
  }
  const int bandDots = (mode & 0x20) != 0 ? 24 : 8;  // ESC * modes 32 and 33 print 24-dot bands
  BandBuilder band(image, bandDots, doubleHeight);
  if (!band.Allocate()) return kErrNoMemory;

  // ESC * m nL nH: bit image of n columns in mode m, sent before every band
  const unsigned char header[5] = {0x1B, 0x2A, mode, static_cast<unsigned char>(image.width % 256),
                                   static_cast<unsigned char>(image.width / 256)};
  // The last stored row is the top of the picture.
  for (int row = image.height - 1; row >= 0; --row) {
    band.AddRow(BmpRow(bmp, image, row));
    if (band.Full() && band.Send(ctx, header) != kSuccess) return kFailure;
  }
  if (!band.Empty() && band.Send(ctx, header) != kSuccess) return kFailure;
  return kSuccess;
}
