#pragma once
#include <cstdint>
#include <string>
#include <vector>

// Which sound device each player gets on the multi-channel cards that stations use, told from the names under
// which the cards' drivers list their outputs.
namespace qm {

struct DeviceAssignment {
  std::int16_t cardType = 0;        // 0: no known card
  std::int32_t devicesCounted = 0;  // outputs that are players' outputs of that card
  std::int16_t numberPlayers = 0;
  std::vector<std::int32_t>
      deviceOfPlayer;              // by player less 1, as many as maxPlayers; 0 where the names tell nothing
  bool portsNotSeparated = false;  // the card hides its single outputs behind one
};

// numberPlayers of -1 means not set: the card decides.
DeviceAssignment AssignDevices(const std::vector<std::string>& outputNames, std::int16_t numberPlayers,
                               std::int16_t maxPlayers);

}  // namespace qm
