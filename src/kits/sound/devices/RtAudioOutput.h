#pragma once
#include <string>

#include "kits/sound/devices/Output.h"
#include "kits/sound/devices/RtAudioStream.h"

namespace qm {

// An output of a sound server or a card.
class RtAudioOutput : public Output {
 public:
  // An empty name means the server's default output.
  explicit RtAudioOutput(enSoundServer server = essAny, std::string deviceName = {})
      : m_stream(esdOutput, server, std::move(deviceName)) {}

  const std::string& Name() const override { return m_stream.Name(); }
  bool Open(const OutputShape& wanted, enOutputMatch match, std::string& errorText) override {
    return m_stream.Open(wanted, match, errorText);
  }
  const OutputShape& Shape() const override { return m_stream.Shape(); }
  bool Start(FrameSource& source, std::string& errorText) override {
    return m_stream.Start(source, errorText);
  }
  void Close(enOutputClose how) override { m_stream.Close(how); }
  bool Alive() override { return m_stream.Alive(); }
  std::string FaultText() const override { return m_stream.FaultText(); }

 private:
  RtAudioStream m_stream;
};

}  // namespace qm
