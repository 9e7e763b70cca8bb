#include "emulator/label_roll.h"

#include <algorithm>

namespace posprint::emulator {
namespace {

constexpr int kLabelGap = 16;  // dots of backing between labels in the preview
constexpr long kMaxRollDots = 64L * 1024 * 1024;

}  // namespace

bool LabelRoll::Add(const Image& label) {
  const long dots = static_cast<long>(label.Width()) * label.Height();
  if (dots_ + dots > kMaxRollDots) return false;
  dots_ += dots;
  labels_.push_back(label);
  return true;
}

Image LabelRoll::Preview() const {
  if (labels_.empty()) return Image();
  int width = 1, height = -kLabelGap;
  for (const Image& label : labels_) {
    width = std::max(width, label.Width());
    height += label.Height() + kLabelGap;
  }
  Image out(width, height, kBackground);
  int y = 0;
  for (const Image& label : labels_) {
    out.FillRect(0, y, label.Width(), label.Height(), kPaper);
    out.DrawOver(label, 0, y);
    y += label.Height() + kLabelGap;
  }
  return out;
}

}  // namespace posprint::emulator
