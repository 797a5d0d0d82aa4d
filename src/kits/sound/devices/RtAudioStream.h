#pragma once
#include <memory>
#include <string>

#include "kits/sound/devices/Input.h"
#include "kits/sound/devices/Output.h"
#include "kits/sound/devices/SoundServers.h"

namespace qm {

enum enStreamDirection : std::int32_t { esdOutput, esdInput };

// One direction of a device of a sound server or a card. The server is asked anew at each Open, so that a
// device which comes back under another number is found by its name. One control thread at a time.
class RtAudioStream {
 public:
  // A device by the name in the server's listing; an empty one means the server's default of that direction.
  RtAudioStream(enStreamDirection direction, enSoundServer server, std::string deviceName);
  ~RtAudioStream();

  const std::string& Name() const { return m_name; }
  bool Open(const OutputShape& wanted, enOutputMatch match, std::string& errorText);
  const OutputShape& Shape() const { return m_shape; }
  // Of the direction that it has.
  bool Start(FrameSource& source, std::string& errorText);
  bool Start(FrameTaker& taker, std::string& errorText);
  // A device that is stuck is left to itself.
  void Close(enOutputClose how);
  bool Alive();
  std::string FaultText() const;

 private:
  struct State;

  bool Begin(std::string& errorText);

  const enStreamDirection m_direction;
  const enSoundServer m_server;
  const std::string m_deviceName;
  const std::string m_name;
  OutputShape m_shape;
  std::shared_ptr<State> m_stream;  // shared with the calls into a server that may be stuck
};

}  // namespace qm
