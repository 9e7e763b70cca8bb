// Every link from one page of docs/ to another, and to a file of the source tree, leads
// somewhere: a reader at a terminal follows them.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

namespace {

namespace fs = std::filesystem;

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(DocsLinks, EveryRelativeLinkLeadsToAFile) {
  const fs::path docs = fs::path(POSPRINT_SOURCE_DIR) / "docs";
  ASSERT_TRUE(fs::is_directory(docs));
  // [text](target) where target is not a web address; an anchor after '#' is dropped.
  const std::regex link(R"(\]\(([^)#\s]+)(#[^)\s]*)?\))");
  int links = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(docs)) {
    if (entry.path().extension() != ".md") continue;
    const std::string page = ReadFile(entry.path());
    for (std::sregex_iterator it(page.begin(), page.end(), link), end; it != end; ++it) {
      const std::string target = (*it)[1];
      if (target.find("://") != std::string::npos || target.rfind("mailto:", 0) == 0) continue;
      ++links;
      EXPECT_TRUE(fs::exists(docs / target)) << entry.path().filename() << " links to " << target;
    }
  }
  EXPECT_GT(links, 20) << "the pages link each other";
}

TEST(DocsLinks, TheIndexNamesEveryPage) {
  const fs::path docs = fs::path(POSPRINT_SOURCE_DIR) / "docs";
  const std::string index = ReadFile(docs / "README.md");
  for (const fs::directory_entry& entry : fs::directory_iterator(docs)) {
    const std::string name = entry.path().filename().string();
    if (entry.path().extension() != ".md" || name == "README.md") continue;
    EXPECT_NE(index.find("](" + name + ")"), std::string::npos) << name << " is not in docs/README.md";
  }
}

}  // namespace
