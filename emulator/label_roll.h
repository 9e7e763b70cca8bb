// The labels a label printer has printed, in order, and the preview that shows them one
// under the other on their backing.
#pragma once

#include <vector>

#include "emulator/image.h"

namespace posprint::emulator {

// The most dots one label picture holds (a 100 x 70 mm label at 8 dots a millimetre has
// 358400): a bound against garbled sizes, not a limit a real label meets.
constexpr long kMaxLabelDots = 16L * 1024 * 1024;

class LabelRoll {
 public:
  // False when the roll already holds as many dots as a virtual printer keeps (a bound
  // against a garbled stream printing huge labels over and over).
  bool Add(const Image& label);
  int Count() const { return static_cast<int>(labels_.size()); }
  Image Label(int index) const { return index >= 0 && index < Count() ? labels_[index] : Image(); }
  // The labels on their backing, a gap of backing between two; empty when none.
  Image Preview() const;

 private:
  std::vector<Image> labels_;
  long dots_ = 0;
};

}  // namespace posprint::emulator
