#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

#include "kits/common/Descriptor.h"
#include "kits/common/Files.h"
#include "kits/common/Registry.h"
#include "kits/common/RegistryDocument.h"

namespace qm {
namespace {

// Tells one state of a file from another without reading it.
struct FileStamp {
  bool exists = false;
  int error = 0;  // of looking at it
  dev_t device = 0;
  ino_t number = 0;
  off_t length = 0;
  std::int64_t seconds = 0, nanoseconds = 0;  // last written
  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

FileStamp StampOf(const std::string& path) {
  struct stat file {};
  if (::stat(NativePath(path).c_str(), &file) != 0) return {false, errno};
  return {true, 0, file.st_dev, file.st_ino, file.st_size, file.st_mtim.tv_sec, file.st_mtim.tv_nsec};
}

// A store's file as it was last read.
class StoreFile {
 public:
  explicit StoreFile(const std::filesystem::path& path) : m_path(path.string()) {}

  const std::string& Path() const { return m_path; }
  const RegistryDocument& Document() const { return m_document; }
  // Whether the document is what the file holds; it is empty for an absent file.
  bool IsRead() const { return m_isRead; }

  // Reads the file if it changed since. True when it did.
  bool Refresh() {
    const FileStamp stamp = StampOf(m_path);
    if (m_wasLookedAt && stamp == m_stamp) return false;
    m_stamp = stamp;
    m_wasLookedAt = true;
    std::string text;
    m_isRead = stamp.exists ? ReadWholeFile(m_path, text) : stamp.error == ENOENT || stamp.error == ENOTDIR;
    if (m_isRead) m_document = RegistryDocument(text);
    return true;
  }

  bool Replace(const RegistryDocument& document) {
    const bool replaced = WriteFileAtomically(m_path, document.Text());
    m_wasLookedAt = false;
    Refresh();
    return replaced;
  }

 private:
  std::string m_path;
  bool m_wasLookedAt = false;
  bool m_isRead = false;
  FileStamp m_stamp;
  RegistryDocument m_document;
};

// Keeps other processes of ours from changing files in a folder between our reading and our writing. A folder
// that cannot be locked, or stays locked, is gone without: a setting may then be lost to another process, but
// nobody waits.
class FolderLock {
 public:
  explicit FolderLock(const std::string& folder) : m_folder(NativePath(folder), O_RDONLY | O_DIRECTORY) {
    constexpr int kTries = 100;
    for (int i = 0; i < kTries; ++i) {
      if (::flock(m_folder.Number(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) return;
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
  }

 private:
  Descriptor m_folder;
};

class InFile : public Registry {
 public:
  InFile(const std::filesystem::path& file, const std::filesystem::path& beneath)
      : m_file(file), m_beneath(beneath) {}

  std::optional<std::string> Read(std::string_view path, std::string_view name) const override {
    Refresh();
    const std::string* value = m_view.Find(path, name);
    if (value == nullptr) value = m_beneath.Document().Find(path, name);
    return value != nullptr ? std::optional(*value) : std::nullopt;
  }

  bool Write(std::string_view path, std::string_view name, std::string_view value) override {
    return Change({std::string(path), std::string(name), std::string(value)});
  }

  bool Delete(std::string_view path, std::string_view name) override {
    return Change({std::string(path), std::string(name), {}}) && !Read(path, name);
  }

  std::vector<std::string> SubKeys(std::string_view path) const override {
    Refresh();
    std::vector<std::string> names;
    m_view.AddSubKeys(path, names);
    m_beneath.Document().AddSubKeys(path, names);
    return names;
  }

  void BeginChanges() override { ++m_held; }

  bool EndChanges() override {
    if (m_held > 0) --m_held;
    return Store();
  }

 private:
  struct OneChange {
    std::string path, name;
    std::optional<std::string> value;  // absent: deleted

    void ApplyTo(RegistryDocument& document) const {
      if (value) {
        document.Set(path, name, *value);
      } else {
        document.Remove(path, name);
      }
    }
  };

  bool Change(OneChange change) {
    Refresh();
    change.ApplyTo(m_view);
    m_changes.push_back(std::move(change));
    return Store();
  }

  // What others wrote shows at once, with our changes that are still held back over it.
  void Refresh() const {
    m_beneath.Refresh();
    if (!m_file.Refresh()) return;
    m_view = m_file.Document();
    for (const OneChange& change : m_changes) change.ApplyTo(m_view);
  }

  // Brings the changes to disk unless they are held back. They are given up when that fails.
  bool Store() {
    if (m_held > 0 || m_changes.empty()) return true;
    const std::vector<OneChange> changes = std::exchange(m_changes, {});
    const std::string folder = FolderOf(m_file.Path());
    if (!folder.empty()) MakeFolder(folder);
    const FolderLock lock(folder.empty() ? "." : folder);
    m_file.Refresh();
    bool stored = m_file.IsRead();
    if (stored) {
      RegistryDocument changed = m_file.Document();
      for (const OneChange& change : changes) change.ApplyTo(changed);
      stored = changed.Text() == m_file.Document().Text() || m_file.Replace(changed);
    }
    m_view = m_file.Document();
    return stored;
  }

  mutable StoreFile m_file;
  mutable StoreFile m_beneath;
  mutable RegistryDocument m_view;  // the file with the changes that are held back
  std::vector<OneChange> m_changes;
  int m_held = 0;
};

}  // namespace

std::shared_ptr<Registry> FileRegistry(const std::filesystem::path& file,
                                       const std::filesystem::path& beneath) {
  return std::make_shared<InFile>(file, beneath);
}

}  // namespace qm
