// The family's command layer on its own: setting frames with their checksums, and the
// retracting cut's three writes. The rest shows in each model's tests.
#include "drivers/ticket/stb_family/stb_commands.h"

#include <gtest/gtest.h>

#include "support/bytes.h"

namespace {

using posprint::test::ScriptedContext;
using namespace StbFamily;

TEST(StbFamily, SettingFramesCarryTheirChecksum) {
  struct Case {
    std::uint8_t setting, value;
    const char* sent;
  };
  const Case cases[] = {
      {0x01, 0x01, "1D FF 0A 32 01 01 5A"}, {0x01, 0x00, "1D FF 0A 32 01 00 59"},
      {0x10, 0x00, "1D FF 0A 32 10 00 68"}, {0x10, 0x01, "1D FF 0A 32 10 01 69"},
      {0x09, 0x01, "1D FF 0A 32 09 01 62"}, {0x09, 0x00, "1D FF 0A 32 09 00 61"},
      {0x0A, 0x01, "1D FF 0A 32 0A 01 63"}, {0x0F, 0x04, "1D FF 0A 32 0F 04 6B"},
      {0x0F, 0x02, "1D FF 0A 32 0F 02 69"}, {0x0F, 0xFF, "1D FF 0A 32 0F FF 66"},  // the sum wraps
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.sent);
    ScriptedContext line;
    EXPECT_EQ(stb_SettingFrame(line.ctx, c.setting, c.value), kSuccess);
    EXPECT_EQ(line.Sent(), c.sent);
  }
}

TEST(StbFamily, RetractingCutStopsAtTheFirstShortWrite) {
  for (int write = 1; write <= 3; ++write) {
    SCOPED_TRACE(write);
    ScriptedContext line;
    line.port.ShortWriteAt(write, 1);
    EXPECT_EQ(stb_CutRetract(line.ctx), kFailure);
    EXPECT_EQ(line.port.Writes().size(), static_cast<std::size_t>(write));
  }
}

}  // namespace
