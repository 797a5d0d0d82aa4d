#include "kits/common/Registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <random>

#include "support/SoundFixtures.h"

namespace qm {
namespace {

using testing::ElementsAre;

constexpr const char* kPath = "SOFTWARE\\Quillmere\\AudioSettings\\Main";

TEST(Registry, PathsAndNamesIgnoreCaseAndAbsentValuesFallBack) {
  const auto registry = MemoryRegistry();
  EXPECT_TRUE(registry->Write("Software\\Quillmere", "Volume", "x"));
  EXPECT_TRUE(registry->Write("SOFTWARE\\QUILLMERE\\", "volume", "85"));
  EXPECT_EQ(registry->ReadNumber("software\\quillmere", "VOLUME", 7), 85);
  EXPECT_EQ(registry->Read("software", "Volume"), std::nullopt);
  EXPECT_TRUE(registry->Delete("software\\Quillmere", "Volume"));
  EXPECT_EQ(registry->ReadNumber("Software\\Quillmere", "Volume", 7), 7);
  registry->Write(kPath, "Empty", "");
  EXPECT_EQ(registry->ReadText(kPath, "Empty", "fallback"), "");
  EXPECT_EQ(registry->ReadText(kPath, "None", "fallback"), "fallback");
}

class RegistryFile : public testing::Test {
 protected:
  std::shared_ptr<Registry> Open() const { return FileRegistry(m_file, m_beneath); }
  std::string Text() const { return test::ReadBytes(m_file); }

  test::TempFolder m_temp;
  std::string m_file = m_temp.File("conf/registry");
  std::string m_beneath = m_temp.File("machine");
};

TEST_F(RegistryFile, IsReadableText) {
  const auto registry = Open();
  EXPECT_TRUE(registry->Write(kPath, "EditorPath", "C:\\Edit\\edit.exe"));
  EXPECT_TRUE(registry->Write(kPath, "Number=1", " a\n\"b\"\\\x01"));
  EXPECT_TRUE(registry->Write("Other", "x", ""));
  EXPECT_EQ(Text(),
            "[SOFTWARE\\Quillmere\\AudioSettings\\Main]\nEditorPath=C:\\Edit\\edit.exe\n"
            "\"Number=1\"=\" a\\n\\\"b\\\"\\\\\\x01\"\n\n[Other]\nx=\n");
}

TEST_F(RegistryFile, EveryTextComesBackFromDisk) {
  const std::string letters = " \"\\=[]#;\n\r\tx%\x01\x7Fé";
  std::mt19937 random(7);
  const auto any = [&] {
    std::string text;
    for (auto left = random() % 6; left > 0; --left) text += letters[random() % letters.size()];
    return text;
  };
  const auto registry = Open();
  registry->BeginChanges();
  std::vector<std::array<std::string, 3>> written;
  for (int i = 0; i < 300; ++i) {
    written.push_back({"p" + any() + "." + std::to_string(i), any() + std::to_string(i % 10), any()});
    const auto& [path, name, value] = written.back();
    EXPECT_TRUE(registry->Write(path, name, value));
  }
  EXPECT_EQ(Text(), "") << "held back";
  EXPECT_TRUE(registry->EndChanges());
  const auto again = Open();
  for (const auto& [path, name, value] : written) EXPECT_EQ(again->Read(path, name), value) << path << name;
}

TEST_F(RegistryFile, KeepsOrderCommentsAndWhatItDoesNotUnderstand) {
  std::filesystem::create_directory(m_temp.File("conf"));
  const std::string head = "# ours\r\n[A\\]\r\n; note\r\nb = 1 \r\nno value\n\"open=2\nq=\"x\" y\n";
  test::WriteBytes(m_file, "\xEF\xBB\xBF" + head + "\n[broken\nb=9\n[B]\n c=2");
  const auto registry = Open();
  EXPECT_EQ(registry->Read("a", "B"), "1");
  EXPECT_EQ(registry->Read("A", "q"), std::nullopt);
  EXPECT_THAT(registry->SubKeys(""), ElementsAre("A", "B"));
  EXPECT_TRUE(registry->Write("A", "new", "3"));
  EXPECT_TRUE(registry->Write("B", "C", "4"));
  EXPECT_EQ(Text(), head + "new=3\n\n[broken\nb=9\n[B]\nc=4\n");
}

TEST_F(RegistryFile, TheMachinesValuesShowWhereTheUserHasNone) {
  test::WriteBytes(m_beneath, "[S\\P\\One]\na=machine\nb=machine\n[S\\P\\Two\\Deep]\nc=1\n");
  const auto registry = Open();
  EXPECT_TRUE(registry->Write("s\\p\\one", "a", "user"));
  EXPECT_TRUE(registry->Write("s\\p\\Three", "a", "user"));
  EXPECT_EQ(registry->Read("S\\P\\One", "a"), "user");
  EXPECT_EQ(registry->Read("S\\P\\One", "b"), "machine");
  EXPECT_THAT(registry->SubKeys("S\\P"), ElementsAre("one", "Three", "Two"));
  EXPECT_FALSE(registry->Delete("S\\P\\One", "a")) << "the machine's value is there afterwards";
  EXPECT_EQ(registry->Read("S\\P\\One", "a"), "machine");
  EXPECT_TRUE(registry->Delete("S\\P\\Three", "a"));
  EXPECT_EQ(Text(), "");
}

TEST_F(RegistryFile, TwoProcessesLoseNothingOfEachOther) {
  const auto ours = Open(), theirs = Open();
  EXPECT_TRUE(ours->Write("A", "x", "1"));
  EXPECT_TRUE(theirs->Write("A", "y", "2"));
  ours->BeginChanges();
  EXPECT_TRUE(ours->Write("A", "x", "3"));
  EXPECT_TRUE(theirs->Write("A", "z", "4"));
  EXPECT_EQ(ours->Read("A", "x"), "3");
  EXPECT_EQ(ours->Read("A", "z"), "4");
  EXPECT_TRUE(theirs->Write("A", "y", "5"));
  EXPECT_TRUE(ours->EndChanges());
  EXPECT_EQ(Text(), "[A]\nx=3\ny=5\nz=4\n");
}

// A user whom permissions stop, as long as it lives; the superuser is stopped by none.
class OrdinaryUser {
 public:
  explicit OrdinaryUser(const std::string& folder)
      : m_became(geteuid() == 0 && chown(folder.c_str(), 65534, 65534) == 0 && seteuid(65534) == 0) {}
  ~OrdinaryUser() { EXPECT_TRUE(!m_became || seteuid(0) == 0); }

 private:
  const bool m_became;
};

TEST_F(RegistryFile, AFileThatCannotBeReadIsNotOverwritten) {
  const std::string text = "[A]\nx=0\n";
  {
    const OrdinaryUser user(m_temp.Path());
    ASSERT_TRUE(std::filesystem::create_directory(m_temp.File("conf")));
    test::WriteBytes(m_file, text);
    ASSERT_EQ(chmod(m_file.c_str(), 0200), 0);
    const auto registry = Open();
    EXPECT_FALSE(registry->Write("A", "x", "1"));
    EXPECT_EQ(registry->Read("A", "x"), std::nullopt);
    ASSERT_EQ(chmod(m_file.c_str(), 0600), 0);
    EXPECT_EQ(Text(), text);
  }
  EXPECT_TRUE(Open()->Write("A", "x", "2"));
  EXPECT_EQ(Text(), "[A]\nx=2\n");
}

TEST_F(RegistryFile, HeldChangesThatCannotBeStoredAreGivenUp) {
  test::WriteBytes(m_temp.File("conf"), "a file where the folder should be");
  const auto registry = Open();
  registry->BeginChanges();
  registry->BeginChanges();
  EXPECT_TRUE(registry->Write("A", "x", "1"));
  EXPECT_TRUE(registry->EndChanges());
  EXPECT_FALSE(registry->EndChanges());
  EXPECT_EQ(registry->Read("A", "x"), std::nullopt);
}

}  // namespace
}  // namespace qm
