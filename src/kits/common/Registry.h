#pragma once
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qm {

// A store of settings: paths of keys ("SOFTWARE\Quillmere\AudioSettings"), each with named text values.
// Paths, and names within a path, are compared ignoring ASCII case and keep the case they were first written
// in. Host thread only.
class Registry {
 public:
  virtual ~Registry() = default;

  // The value's text, or nothing when the path or the name is not there.
  virtual std::optional<std::string> Read(std::string_view path, std::string_view name) const = 0;

  // False when the value could not be stored; what was stored before then stands.
  virtual bool Write(std::string_view path, std::string_view name, std::string_view value) = 0;

  // True when the value is not there afterwards.
  virtual bool Delete(std::string_view path, std::string_view name) = 0;

  // Names of the keys directly below a path, in the order in which they stand.
  virtual std::vector<std::string> SubKeys(std::string_view path) const = 0;

  // Holds back the writing of the store to disk until the matching EndChanges, which returns false if it failed.
  // Pairs may nest.
  virtual void BeginChanges() {}
  virtual bool EndChanges() { return true; }

  std::string ReadText(std::string_view path, std::string_view name, std::string_view fallback) const;
  std::int32_t ReadNumber(std::string_view path, std::string_view name, std::int32_t fallback) const;
};

// A store in memory, empty at first.
std::shared_ptr<Registry> MemoryRegistry();

// A store in one readable text file, replaced atomically at each change, over a read-only one beneath it whose
// values show where the upper file has none. Either file may be absent.
std::shared_ptr<Registry> FileRegistry(const std::filesystem::path& file, const std::filesystem::path& beneath = {});

// FileRegistry over the user's configuration folder ($XDG_CONFIG_HOME/quillmere/registry, else
// ~/.config/quillmere/registry) and /etc/quillmere/registry.
std::shared_ptr<Registry> UserRegistry();

}  // namespace qm
