#pragma once
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "kits/sound/SoundSystem.h"
#include "kits/sound/devices/SoundServers.h"

namespace qm {

class Input;
class Output;

// The sound devices of this machine, as its sound server (or its cards) list them: by name, in the order of
// the names, whatever order they were plugged in. Host thread only.
//
// The list is read when it is first asked for, and again by Refresh. Without server and card it is empty.
class DeviceCatalogue : public SoundDeviceList {
 public:
  explicit DeviceCatalogue(enSoundServer server = essAny) : m_wanted(server) {}

  std::vector<SoundDevice> Outputs() const override;
  std::vector<SoundDevice> Inputs() const override;

  // The list stays as it was when the server is stuck.
  void Refresh();

  // The number of an output or an input by its name, ignoring case; 0 when there is none.
  std::int32_t OutputNumber(const std::string& name) const;
  std::int32_t InputNumber(const std::string& name) const;

  // The number-th output, or the system's default one for 0 and below. Null, with one line in errorText, when
  // the list has no such output; the default one is not looked for before it is opened.
  std::unique_ptr<Output> MakeOutput(std::int32_t number, std::string& errorText) const;
  // The same for the number-th input.
  std::unique_ptr<Input> MakeInput(std::int32_t number, std::string& errorText) const;

 private:
  const ServerListing& Listing() const;

  const enSoundServer m_wanted;
  mutable std::optional<ServerListing> m_listing;
};

}  // namespace qm
