#include "kits/sound/devices/DeviceCatalogue.h"

#include <algorithm>

#include "kits/common/Text.h"
#include "kits/sound/devices/RtAudioInput.h"
#include "kits/sound/devices/RtAudioOutput.h"

namespace qm {
namespace {

constexpr std::int32_t kMaskRates[] = {11025, 22050, 44100};

// Playback resamples to the device's own rate, so every rate fits; channels must be there.
std::uint32_t Formats(std::int32_t channels) {
  std::uint32_t formats = 0;
  for (std::int32_t rate : kMaskRates)
    for (std::int32_t wanted = 1; wanted <= std::min(channels, 2); ++wanted)
      formats |= SuitableFormatBit(rate, wanted);
  return formats;
}

std::vector<SoundDevice> Direction(const ServerListing& listing, std::int32_t ServerDevice::*channels) {
  std::vector<SoundDevice> list;
  for (const ServerDevice& device : listing.devices)
    if (device.*channels > 0) list.push_back({device.name, Formats(device.*channels)});
  return list;
}

// A card in use does not tell what it can do: what is known of it stands.
void KeepKnown(ServerListing& listing, const ServerListing& known) {
  if (listing.server != known.server) return;
  for (ServerDevice& device : listing.devices) {
    if (device.probed) continue;
    const auto former = std::find_if(known.devices.begin(), known.devices.end(),
                                     [&](const ServerDevice& other) { return other.name == device.name; });
    if (former != known.devices.end()) device = *former;
  }
}

std::int32_t NumberOf(const std::string& name, const std::vector<SoundDevice>& devices) {
  const auto found = std::find_if(devices.begin(), devices.end(), [&](const SoundDevice& device) {
    return EqualIgnoringCase(device.name, name);
  });
  return found == devices.end() ? 0 : static_cast<std::int32_t>(found - devices.begin()) + 1;
}

template <class Way>
std::unique_ptr<Way> Make(enSoundServer server, std::int32_t number, const std::vector<SoundDevice>& devices,
                          const char* kind, std::string& errorText) {
  if (number <= static_cast<std::int32_t>(devices.size()))
    return std::make_unique<Way>(server, devices[static_cast<std::size_t>(number - 1)].name);
  errorText = std::string("there is no sound ") + kind + " number " + std::to_string(number);
  return nullptr;
}

}  // namespace

const ServerListing& DeviceCatalogue::Listing() const {
  if (!m_listing) {
    m_listing.emplace();
    ListSoundDevices(m_wanted, *m_listing);
  }
  return *m_listing;
}

void DeviceCatalogue::Refresh() {
  ServerListing listing;
  if (!ListSoundDevices(m_wanted, listing)) return;
  if (m_listing) KeepKnown(listing, *m_listing);
  m_listing = std::move(listing);
}

std::vector<SoundDevice> DeviceCatalogue::Outputs() const {
  return Direction(Listing(), &ServerDevice::outputChannels);
}

std::vector<SoundDevice> DeviceCatalogue::Inputs() const {
  return Direction(Listing(), &ServerDevice::inputChannels);
}

std::int32_t DeviceCatalogue::OutputNumber(const std::string& name) const {
  return NumberOf(name, Outputs());
}

std::int32_t DeviceCatalogue::InputNumber(const std::string& name) const {
  return NumberOf(name, Inputs());
}

std::unique_ptr<Output> DeviceCatalogue::MakeOutput(std::int32_t number, std::string& errorText) const {
  if (number <= 0) return std::make_unique<RtAudioOutput>(m_wanted);
  return Make<RtAudioOutput>(Listing().server, number, Outputs(), "output", errorText);
}

std::unique_ptr<Input> DeviceCatalogue::MakeInput(std::int32_t number, std::string& errorText) const {
  if (number <= 0) return std::make_unique<RtAudioInput>(m_wanted);
  return Make<RtAudioInput>(Listing().server, number, Inputs(), "input", errorText);
}

}  // namespace qm
