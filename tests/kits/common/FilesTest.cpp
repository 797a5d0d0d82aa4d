#include "kits/common/Files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "support/SoundFixtures.h"

namespace qm {
namespace {

namespace fs = std::filesystem;

TEST(Files, PathsAreTakenApartAtEitherSeparatorAndJoinedWithOne) {
  const struct {
    const char *path, *folder, *name, *base, *extension;
  } cases[] = {{"a/b/c.wav", "a/b", "c.wav", "c", "wav"},
               {"C:\\Audio\\Jingle 1.MP3", "C:\\Audio", "Jingle 1.MP3", "Jingle 1", "MP3"},
               {"\\\\server\\share\\x", "\\\\server\\share", "x", "x", ""},
               {"name.tar.gz", "", "name.tar.gz", "name.tar", "gz"},
               {"/root.ogg", "/", "root.ogg", "root", "ogg"},
               {"dir.d/.hidden", "dir.d", ".hidden", ".hidden", ""},
               {"a//b/", "a//b", "", "", ""},
               {"..", "", "..", "..", ""},
               {"end.", "", "end.", "end", ""},
               {"", "", "", "", ""}};
  for (const auto& c : cases) {
    EXPECT_EQ(FolderOf(c.path), c.folder) << c.path;
    EXPECT_EQ(FileNameOf(c.path), c.name) << c.path;
    EXPECT_EQ(BaseNameOf(c.path), c.base) << c.path;
    EXPECT_EQ(ExtensionOf(c.path), c.extension) << c.path;
  }
  const char* joined[][3] = {{"a", "b", "a/b"}, {"a\\", "\\b", "a/b"}, {"/", "b", "/b"},
                             {"", "b", "b"},    {"a", "", "a"},        {"\\\\", "server", "//server"}};
  for (const auto& [left, right, path] : joined) EXPECT_EQ(JoinPath(left, right), path);
}

TEST(Files, FilesAndFoldersAreToldApart) {
  const test::TempFolder temp;
  const std::string file = temp.File("sub\\x.txt");
  EXPECT_FALSE(AppendToFile(file, "abc")) << "no folder yet";
  EXPECT_TRUE(MakeFolder(temp.File("sub")) && MakeFolder(temp.File("sub/")));
  EXPECT_TRUE(AppendToFile(file, "abc") && AppendToFile(file, "de"));
  EXPECT_EQ(FileLength(file), 5);
  EXPECT_TRUE(FileExists(file));
  EXPECT_FALSE(FolderExists(file) || MakeFolder(file) || FileExists(temp.Path()));
  EXPECT_EQ(FileLength(temp.Path()), -1);
  EXPECT_EQ(FileLength(temp.File("none")), -1);
  EXPECT_TRUE(MakeFolder(temp.File("empty")));
  EXPECT_FALSE(DeleteFile(temp.File("empty"))) << "a folder is no file";
  EXPECT_TRUE(DeleteFile(file) && DeleteFile(file));
  EXPECT_FALSE(FileExists(file));
}

TEST(Files, ReadingGivesAllOrNothing) {
  const test::TempFolder temp;
  const std::string bytes = std::string(40000, 'x') + std::string("\0\r\n", 3);
  ASSERT_TRUE(WriteFileAtomically(temp.File("a"), bytes));
  std::string contents = "before";
  EXPECT_FALSE(ReadWholeFile(temp.File("none"), contents) || ReadWholeFile(temp.Path(), contents));
  EXPECT_EQ(contents, "before");
  EXPECT_TRUE(ReadWholeFile(temp.File("a"), contents));
  EXPECT_EQ(contents, bytes);
}

std::size_t FilesIn(const std::string& folder) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

TEST(Files, ReplacingKeepsPermissionsAndLinks) {
  const test::TempFolder temp;
  const std::string file = temp.File("real"), link = temp.File("link"), chain = temp.File("chain");
  ASSERT_EQ(symlink("real", link.c_str()), 0);
  ASSERT_EQ(symlink(link.c_str(), chain.c_str()), 0);
  ASSERT_TRUE(WriteFileAtomically(link, "old")) << "its target is yet to come";
  ASSERT_EQ(chmod(file.c_str(), 0640), 0);
  EXPECT_TRUE(WriteFileAtomically(chain, "new"));
  EXPECT_EQ(test::ReadBytes(file), "new");
  EXPECT_TRUE(fs::is_symlink(chain) && fs::is_symlink(link));
  struct stat status {};
  ASSERT_EQ(stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  EXPECT_EQ(FilesIn(temp.Path()), 3u);
}

TEST(Files, AFailedReplacementLeavesEverythingAsItWas) {
  const test::TempFolder temp;
  ASSERT_TRUE(MakeFolder(temp.File("folder")) && WriteFileAtomically(temp.File("a"), "old"));
  ASSERT_EQ(symlink("turn", temp.File("round").c_str()), 0);
  ASSERT_EQ(symlink("round", temp.File("turn").c_str()), 0);
  for (const std::string& path :
       {temp.File("folder"), temp.File("folder/"), temp.File("none/x"), temp.File("round"), std::string()})
    EXPECT_FALSE(WriteFileAtomically(path, "new")) << path;
  const auto before = std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  const rlimit small{1000, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const bool written = WriteFileAtomically(temp.File("a"), std::string(5000, 'x'));
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  std::signal(SIGXFSZ, before);
  EXPECT_FALSE(written) << "it does not fit";
  EXPECT_EQ(test::ReadBytes(temp.File("a")), "old");
  EXPECT_EQ(FilesIn(temp.Path()), 4u);
  EXPECT_EQ(FilesIn(temp.File("folder")), 0u);
}

TEST(Files, NetworkPathsAreKnownByTheirBeginningOrTheirMount) {
  EXPECT_TRUE(IsNetworkPath("\\\\server\\share\\a.wav") && IsNetworkPath("//server/share"));
  EXPECT_FALSE(IsNetworkPath("/proc/self/none") || IsNetworkPath(""));
  const char* table =
      "22 27 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
      "40 22 0:51 / /media/audio\\040wall rw - fuse.sshfs studio:/audio rw\n"
      "broken\n"
      "41 22 0:5 / /x rw master:1 shared:2 - tmpfs none rw\n";
  for (const auto& [device, type] :
       {std::pair{"0:51", "fuse.sshfs"}, {"0:5", "tmpfs"}, {"8:1", "ext4"}, {"9:9", ""}})
    EXPECT_EQ(MountedType(table, device), type);
}

}  // namespace
}  // namespace qm
