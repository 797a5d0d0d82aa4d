#pragma once
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "audio/CopyErrors.h"

namespace qm {

class VellanCompress;
class cAudioFile;
class cAudioFormat;

// The file that a copy writes. It grows beside its path and takes its place at Finish; abandoned or failed it
// leaves what was there.
class CopyDestination {
 public:
  CopyDestination();
  ~CopyDestination();  // abandons
  CopyDestination(const CopyDestination&) = delete;
  CopyDestination& operator=(const CopyDestination&) = delete;

  enCopyError Open(const std::string& path, const cAudioFormat& format);
  bool IsOpen() const { return m_destWriter || m_destCompressor; }
  // Whole frames of DestChannels() samples; false when the system or the encoder refuses.
  bool Write(std::span<const float> block);
  // The same for frames as a file of the destination's format stores them.
  bool WriteStored(std::span<const std::uint8_t> frames);
  // Whether a source's frames can be passed on as they are stored, and must be so as to keep every bit: they
  // are WAV samples of the destination's own format with more digits than a float.
  bool PassesStored(const cAudioFormat& source) const;
  // Closes; false when the file could not be written to its end.
  bool Finish();
  void Abandon();

  // As the file really has them.
  std::int32_t DestSampleRate() const { return m_sampleRate; }
  std::int32_t DestChannels() const { return m_channels; }
  // The loudest sample that the file stores unclipped, full scale 1.
  double Ceiling() const { return m_ceiling; }
  float Duration() const;                                   // seconds written, also after it was closed
  const std::string& Problem() const { return m_problem; }  // of the last failure, one line

 private:
  enCopyError OpenWriter(const std::string& path, const cAudioFormat& format);
  enCopyError OpenCompressor(const std::string& path, const cAudioFormat& format);
  void TakeFormat(const cAudioFormat& format);
  bool Written(std::int32_t error, std::size_t frames);

  // At most one is there.
  std::unique_ptr<cAudioFile> m_destWriter;
  std::unique_ptr<VellanCompress> m_destCompressor;
  std::int32_t m_sampleRate = 0, m_channels = 0;
  std::int64_t m_frames = 0;
  double m_ceiling = 1;
  std::string m_problem;
};

}  // namespace qm
