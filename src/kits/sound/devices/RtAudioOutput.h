#pragma once
#include <memory>
#include <string>

#include "kits/sound/devices/Output.h"
#include "kits/sound/devices/SoundServers.h"

namespace qm {

// A device of a sound server or a card. The server is asked anew at each Open, so that a device which comes
// back under another number is found by its name.
class RtAudioOutput : public Output {
 public:
  // A device by the name in the server's listing; an empty one means the server's default output.
  explicit RtAudioOutput(enSoundServer server = essAny, std::string deviceName = {});
  ~RtAudioOutput() override;

  const std::string& Name() const override { return m_name; }
  bool Open(const OutputShape& wanted, enOutputMatch match, std::string& errorText) override;
  const OutputShape& Shape() const override { return m_shape; }
  bool Start(FrameSource& source, std::string& errorText) override;
  // A device that is stuck is left to itself.
  void Close(enOutputClose how) override;
  bool Alive() override;
  std::string FaultText() const override;

 private:
  struct Stream;

  const enSoundServer m_server;
  const std::string m_deviceName;
  const std::string m_name;
  OutputShape m_shape;
  std::shared_ptr<Stream> m_stream;  // shared with the calls into a server that may be stuck
};

}  // namespace qm
