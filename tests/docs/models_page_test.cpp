// docs/models.md shows what `posprint models --markdown` prints, so the page cannot drift
// from the catalogue (which tests/catalogue holds against the drivers).
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "host/host_helpers.h"

namespace posprint::test {
namespace {

TEST(ModelsPage, TablesAreWhatTheHostPrints) {
  std::ifstream file(std::string(POSPRINT_SOURCE_DIR) + "/docs/models.md");
  ASSERT_TRUE(file) << "docs/models.md";
  std::stringstream page;
  page << file.rdbuf();
  const std::string marker = "<!-- posprint models --markdown -->\n";
  const std::size_t at = page.str().find(marker);
  ASSERT_NE(at, std::string::npos) << "the marker line before the generated part";
  const ProgramRun run = Posprint({"models", "--markdown"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(page.str().substr(at + marker.size()), run.out)
      << "regenerate the page as its text says, after changing the catalogue";
}

}  // namespace
}  // namespace posprint::test
