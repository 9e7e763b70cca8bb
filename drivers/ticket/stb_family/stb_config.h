// Reading the ticket printers' configuration keys. A key the host does not send keeps its
// default; a key it sends is compared against the model's words, and "anything else"
// in a model's table means any value sent, an empty one included.
#pragma once

#include <cstdint>

#include "platform/parameters.h"

namespace StbFamily {

// True with the value when the host sent the key.
inline bool ReadKey(const IParameterCollection& keys, const wchar_t* key, Nx_Stringa& value) {
  const IParameter* parameter = keys.GetParameter(key);
  if (!parameter) return false;
  value = parameter->GetValue();
  return true;
}

// "param_CutType", compared as written: "val_No" 0, "val_Partial" 1 (when the model has a
// partial cut), anything else 2 (full).
inline int CutTypeWord(const Nx_Stringa& value, bool hasPartialCut) {
  if (value == L"val_No") return 0;
  if (hasPartialCut && value == L"val_Partial") return 1;
  return 2;
}

}  // namespace StbFamily

namespace StbFamily {

// DriverConfig of the roll-only models (STB80, Q1): three bytes.
struct RollConfig {
  std::uint8_t ejectFeeds = 8;  // LF at the end of a ticket: 8 or 0
  std::uint8_t cutType = 0;     // 0 none, 1 partial, 2 full
  std::uint8_t reserved = 0;
};

// "param_LinefeedEjection" ("TRUE" in any case: 8 feeds, anything else none) and
// "param_CutType".
inline void ReadRollConfig(const IParameterCollection& keys, RollConfig& config, bool hasPartialCut) {
  Nx_Stringa value;
  if (ReadKey(keys, L"param_LinefeedEjection", value)) config.ejectFeeds = value.Upper() == L"TRUE" ? 8 : 0;
  if (ReadKey(keys, L"param_CutType", value)) config.cutType = static_cast<std::uint8_t>(CutTypeWord(value, hasPartialCut));
}

}  // namespace StbFamily
