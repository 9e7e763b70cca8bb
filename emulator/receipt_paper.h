// The paper of a receipt, ticket or slip printer: a strip that grows as lines are printed
// and fed, with a mark wherever the cutter went through it. Positions are in dots from
// the left edge of the printable area and from the top of the strip.
#pragma once

#include <vector>

#include "emulator/image.h"

namespace posprint::emulator {

// kPageEnd: the end of a slip, label or ticket that leaves the printer without a cut
// (drawn as a grey line).
enum class CutKind { kFull, kPartial, kPageEnd };

class ReceiptPaper {
 public:
  ReceiptPaper(int paperDots, int printableDots);

  // A new paper width: taken only while nothing is on the strip (else false).
  bool SetWidth(int paperDots, int printableDots);
  int PrintableDots() const { return printable_; }

  // Draws the picture's dots at x across the printable area, on the current line.
  void Put(const Image& picture, int x);
  // Moves the paper by dots: forward when positive, back (never past the last cut) when
  // negative. False when the strip reached its longest.
  bool Feed(int dots);
  void Cut(CutKind kind);

  int Position() const { return y_; }
  bool Full() const { return full_; }
  // Pieces cut off so far, and what hangs out of the printer since the last cut.
  int CutPieces() const { return static_cast<int>(cuts_.size()); }
  Image Piece(int index) const;
  Image SinceLastCut() const;
  // The whole strip with its cut marks, down to the current position.
  Image Strip() const;

 private:
  struct CutMark {
    int y;
    CutKind kind;
  };
  void EnsureHeight(int height);
  void DrawCutMark(const CutMark& cut, Image& into, int yOffset) const;

  int paper_;
  int printable_;
  int margin_;  // blank dots left of the printable area
  Image strip_;
  int y_ = 0;
  int used_ = 0;  // rows holding something (ink or feed)
  int lastCut_ = 0;
  bool full_ = false;
  std::vector<CutMark> cuts_;
};

}  // namespace posprint::emulator
