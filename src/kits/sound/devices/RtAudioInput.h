#pragma once
#include <string>

#include "kits/sound/devices/Input.h"
#include "kits/sound/devices/RtAudioStream.h"

namespace qm {

// An input of a sound server or a card.
class RtAudioInput : public Input {
 public:
  // An empty name means the server's default input.
  explicit RtAudioInput(enSoundServer server = essAny, std::string deviceName = {})
      : m_stream(esdInput, server, std::move(deviceName)) {}

  const std::string& Name() const override { return m_stream.Name(); }
  bool Open(const OutputShape& wanted, enOutputMatch match, std::string& errorText) override {
    return m_stream.Open(wanted, match, errorText);
  }
  const OutputShape& Shape() const override { return m_stream.Shape(); }
  bool Start(FrameTaker& taker, std::string& errorText) override { return m_stream.Start(taker, errorText); }
  void Close() override { m_stream.Close(eocDrop); }
  bool Alive() override { return m_stream.Alive(); }
  std::string FaultText() const override { return m_stream.FaultText(); }

 private:
  RtAudioStream m_stream;
};

}  // namespace qm
