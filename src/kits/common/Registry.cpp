#include "kits/common/Registry.h"

#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/common/RegistryDocument.h"

namespace qm {
namespace {

class InMemory : public Registry {
 public:
  std::optional<std::string> Read(std::string_view path, std::string_view name) const override {
    const std::string* value = m_document.Find(path, name);
    return value != nullptr ? std::optional(*value) : std::nullopt;
  }

  bool Write(std::string_view path, std::string_view name, std::string_view value) override {
    m_document.Set(path, name, value);
    return true;
  }

  bool Delete(std::string_view path, std::string_view name) override {
    m_document.Remove(path, name);
    return true;
  }

  std::vector<std::string> SubKeys(std::string_view path) const override {
    std::vector<std::string> names;
    m_document.AddSubKeys(path, names);
    return names;
  }

 private:
  RegistryDocument m_document;
};

}  // namespace

std::string Registry::ReadText(std::string_view path, std::string_view name,
                               std::string_view fallback) const {
  return Read(path, name).value_or(std::string(fallback));
}

std::int32_t Registry::ReadNumber(std::string_view path, std::string_view name, std::int32_t fallback) const {
  const std::optional<std::string> value = Read(path, name);
  return value ? ParseWhole(*value) : fallback;
}

std::shared_ptr<Registry> MemoryRegistry() {
  return std::make_shared<InMemory>();
}

std::shared_ptr<Registry> UserRegistry() {
  const std::string folder = UserFolder(eufConfig);
  return FileRegistry(folder.empty() ? "" : JoinPath(folder, "registry"), "/etc/quillmere/registry");
}

}  // namespace qm
