// Limits of the shared output functions: the fixed buffers they format into.
#pragma once

#include <cstddef>

// Characters a formatted write or a text line may hold (the terminator comes on top).
constexpr int kOutputBufferChars = 100;
// Line feeds or spaces of one offset: 1 to 99.
constexpr int kMaxFeedOrSpaces = 99;
// Terminators a line feed field may send.
constexpr int kMaxTerminators = 29;
// Characters of barcode data.
constexpr std::size_t kMaxBarcodeData = 90;
