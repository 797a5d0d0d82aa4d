#include "kits/sound/devices/DeviceCatalogue.h"

#include <algorithm>

#include "kits/common/Text.h"
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
  const std::vector<SoundDevice> outputs = Outputs();
  const auto found = std::find_if(outputs.begin(), outputs.end(), [&](const SoundDevice& device) {
    return EqualIgnoringCase(device.name, name);
  });
  return found == outputs.end() ? 0 : static_cast<std::int32_t>(found - outputs.begin()) + 1;
}

std::unique_ptr<Output> DeviceCatalogue::MakeOutput(std::int32_t number, std::string& errorText) const {
  if (number <= 0) return std::make_unique<RtAudioOutput>(m_wanted);
  const std::vector<SoundDevice> outputs = Outputs();
  if (number <= static_cast<std::int32_t>(outputs.size()))
    return std::make_unique<RtAudioOutput>(Listing().server,
                                           outputs[static_cast<std::size_t>(number - 1)].name);
  errorText = "there is no sound output number " + std::to_string(number);
  return nullptr;
}

}  // namespace qm
