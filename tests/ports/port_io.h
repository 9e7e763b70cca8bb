// Byte-string wrappers over otool_READ / otool_WRITE for the port tests.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/otool.h"
#include "support/bytes.h"

namespace posprint::test {

// What one otool_READ returned, or "<failed>" for -1.
inline std::string Read(int handle, int count) {
  std::string buffer(static_cast<std::size_t>(count), '\0');
  const int got = otool_READ(handle, buffer.data(), count);
  return got < 0 ? "<failed>" : buffer.substr(0, static_cast<std::size_t>(got));
}

inline int Write(int handle, const std::string& bytes) {
  return otool_WRITE(handle, bytes.data(), static_cast<int>(bytes.size()));
}

inline int Open(const std::string& name) {
  const std::wstring wide(name.begin(), name.end());
  return otool_OPEN(wide.c_str(), 0, nullptr);
}

}  // namespace posprint::test
