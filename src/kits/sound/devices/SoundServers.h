#pragma once
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace qm {

// Where sound devices come from, in the order in which they are looked for.
enum enSoundServer : std::int32_t {
  essAny,  // the first of the others that has a device
  essJACK,
  essPulseAudio,  // or what stands in for it
  essALSA,        // no server: the cards themselves
};

// A device as its server lists it. Channels are 0 where it has no such direction.
struct ServerDevice {
  std::string name;
  std::uint32_t index = 0;  // the server's own number, good for as long as nothing comes or goes
  std::int32_t outputChannels = 0;
  std::int32_t inputChannels = 0;
  std::int32_t sampleRate = 0;  // the rate it runs at, 0 when it has none of its own
  bool defaultOutput = false;
  bool defaultInput = false;
  bool probed = true;  // false: it is there, but in use, and tells nothing about itself
};

struct ServerListing {
  enSoundServer server = essAny;      // whose devices these are; essAny when none was found
  std::vector<ServerDevice> devices;  // in the order of their names; of two with one name only one shows
};

// Asks the servers that are running and starts none. Any thread; one caller at a time goes through.
// False when a server is stuck: nothing is known then.
bool ListSoundDevices(enSoundServer wanted, ServerListing& listing,
                      std::chrono::milliseconds limit = std::chrono::seconds(3));

}  // namespace qm
