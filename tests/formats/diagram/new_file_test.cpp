#include "formats/new_file.hpp"

#include "formats/read_text.hpp"
#include "formats/write_text.hpp"
#include "tests/support/temporary_folder.hpp"

#include <gtest/gtest.h>

namespace kinemo::formats {
namespace {

namespace fs = std::filesystem;

std::string replaced(const fs::path& file) {
  std::string reason;
  if (!write_text(file, "new", reason)) return reason;
  return read_text(file, reason).value_or(reason);
}

TEST(NewFile, KeepsThePermissionsOfTheFileThatItReplaces) {
  const test::TemporaryFolder folder;
  for (const fs::perms mode : {fs::perms{0600}, fs::perms{0755}}) {
    const fs::path file = folder.write("file", "before");
    fs::permissions(file, mode);
    EXPECT_EQ("new", replaced(file));
    EXPECT_EQ(mode, fs::status(file).permissions());
  }
}

TEST(NewFile, HasAnyNameThatAFileMayHave) {
  const test::TemporaryFolder folder;
  EXPECT_EQ("new", replaced(folder.path() / std::string(255, 'x')));
  EXPECT_NE("new", replaced(folder.path() / std::string(256, 'x')));
  EXPECT_NE("new", replaced(folder.path()));
  EXPECT_EQ(1, std::distance(fs::directory_iterator(folder.path()), {})) << "no temporary file is left";
}

TEST(NewFile, LeavesLinksAsTheyAre) {
  const test::TemporaryFolder folder;
  const fs::path file = folder.write("target", "before");
  const fs::path link = folder.path() / "link";
  fs::create_symlink("target", link);
  EXPECT_EQ("new", replaced(link));
  EXPECT_TRUE(fs::is_symlink(link));
  std::string reason;
  EXPECT_EQ("new", read_text(file, reason));
}

TEST(NewFile, WithoutCommitEverythingIsAsBefore) {
  const test::TemporaryFolder folder;
  const fs::path file = folder.write("file", "before");
  { const NewFile abandoned(file); }
  std::string reason;
  EXPECT_EQ("before", read_text(file, reason));
  EXPECT_EQ(1, std::distance(fs::directory_iterator(folder.path()), {}));
}

}  // namespace
}  // namespace kinemo::formats
