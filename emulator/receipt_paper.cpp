#include "emulator/receipt_paper.h"

#include <algorithm>

namespace posprint::emulator {
namespace {

constexpr int kGrowStep = 2048;
constexpr int kDash = 12;  // length of one dash of a cut mark
constexpr int kCutMarkThickness = 2;

}  // namespace

ReceiptPaper::ReceiptPaper(int paperDots, int printableDots) { SetWidth(paperDots, printableDots); }

bool ReceiptPaper::SetWidth(int paperDots, int printableDots) {
  if (used_ > 0) return false;
  paper_ = std::clamp(paperDots, 1, kMaxImageWidth);
  printable_ = std::clamp(printableDots, 1, paper_);
  margin_ = (paper_ - printable_) / 2;
  strip_ = Image(paper_, kGrowStep);
  return true;
}

void ReceiptPaper::EnsureHeight(int height) {
  if (height <= strip_.Height()) return;
  strip_.ResizeHeight(std::min(std::max(height, strip_.Height() + kGrowStep), kMaxImageHeight));
}

void ReceiptPaper::Put(const Image& picture, int x) {
  if (picture.Empty() || full_) return;
  const int bottom = std::min(y_ + picture.Height(), kMaxImageHeight);
  EnsureHeight(bottom);
  // Only the printable area takes ink.
  const int from = std::max(0, -x);
  const int to = std::min(picture.Width(), printable_ - x);
  if (to <= from) return;
  strip_.DrawOver(picture.Crop(from, 0, to - from, picture.Height()), margin_ + x + from, y_);
  used_ = std::max(used_, bottom);
}

bool ReceiptPaper::Feed(int dots) {
  if (dots < 0) {
    y_ = std::max(lastCut_, y_ + dots);
    return true;
  }
  if (static_cast<long>(y_) + dots >= kMaxImageHeight) {
    y_ = kMaxImageHeight;
    full_ = true;
    used_ = y_;
    return false;
  }
  y_ += dots;
  used_ = std::max(used_, y_);
  return true;
}

void ReceiptPaper::Cut(CutKind kind) {
  if (full_) return;
  // A cut where the paper was last cut (or at its very top) cuts nothing off.
  if (y_ == lastCut_) return;
  cuts_.push_back({y_, kind});
  lastCut_ = y_;
  used_ = std::max(used_, y_);
}

void ReceiptPaper::DrawCutMark(const CutMark& cut, Image& into, int yOffset) const {
  const int y = cut.y - yOffset - kCutMarkThickness / 2;
  if (cut.kind == CutKind::kPageEnd) {
    into.FillRect(0, y, paper_, kCutMarkThickness, kBackground);
    return;
  }
  // A partial cut leaves the middle of the paper whole.
  const int keepFrom = paper_ / 2 - paper_ / 16, keepTo = paper_ / 2 + paper_ / 16;
  for (int x = 0; x < paper_; x += 2 * kDash) {
    for (int dx = 0; dx < kDash && x + dx < paper_; ++dx) {
      if (cut.kind == CutKind::kPartial && x + dx >= keepFrom && x + dx < keepTo) continue;
      into.FillRect(x + dx, y, 1, kCutMarkThickness, kCutMark);
    }
  }
}

Image ReceiptPaper::Piece(int index) const {
  if (index < 0 || index >= CutPieces()) return Image();
  const int top = index == 0 ? 0 : cuts_[index - 1].y;
  const int bottom = cuts_[index].y;
  Image piece = strip_.Crop(0, top, paper_, std::max(bottom - top, 1));
  return piece;
}

Image ReceiptPaper::SinceLastCut() const {
  const int top = lastCut_;
  const int bottom = std::max(used_, y_);
  if (bottom <= top) return Image();
  return strip_.Crop(0, top, paper_, bottom - top);
}

Image ReceiptPaper::Strip() const {
  const int bottom = std::max({used_, y_, 1});
  Image out = strip_.Crop(0, 0, paper_, bottom);
  for (const CutMark& cut : cuts_) DrawCutMark(cut, out, 0);
  return out;
}

}  // namespace posprint::emulator
