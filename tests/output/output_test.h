// Shared by the output tests: bytes written out as the printer receives them, and every
// call run once whole and once more for each of its writes cut short.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "frame/keywords.h"
#include "frame/output.h"
#include "support/bytes.h"

namespace posprint::test {

// "0D 0A" three times is "0D 0A 0D 0A 0D 0A".
inline std::string Repeat(const std::string& hex, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += (i ? " " : "") + hex;
  return out;
}

// The call on a fresh line (42 characters, CR LF): its result, in `sent` the bytes that went
// out and in `writes` the number of writes. Then again with the line refusing each of its
// writes in turn: every such run gives 0 and sends nothing after the refused write.
inline int RunCut(const std::function<int(PortContext&)>& call, std::string& sent, std::size_t* writes = nullptr) {
  ScriptedContext line;
  const int result = call(line.ctx);
  sent = line.port.Written();
  if (writes) *writes = line.port.Writes().size();
  std::string before;
  for (std::size_t n = 1; n <= line.port.Writes().size(); ++n) {
    ScriptedContext cut;
    cut.port.ShortWriteAt(static_cast<int>(n), 0);
    EXPECT_EQ(call(cut.ctx), 0) << "write " << n << " refused";
    EXPECT_EQ(cut.port.Written(), before) << "write " << n << " refused";
    before += line.port.Writes()[n - 1];
  }
  return result;
}

}  // namespace posprint::test
