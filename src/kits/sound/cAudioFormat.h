#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace qm {

enum enAudioFileType : std::int32_t {
  aftUnknown = 0,
  aftOther = 1,
  aftWAV = 2,
  aftMP3 = 4,
  aftOgg = 8,
  aftWMA = 16,
  aftMP2 = 32,
};

// WAV format tags.
enum enWAVFormatTag : std::int32_t {
  wftPCM = 1,
  wftFloat = 3,
  wftMPEG = 0x50,
  wftMPEGLayer3 = 0x55,
  wftExtensible = 0xFFFE,
};

// The format of audio: file type, rate, channels and what the type needs besides. A plain value.
class cAudioFormat {
 public:
  std::int32_t FormatType() const { return m_formatType; }
  void SetFormatType(std::int32_t type) { m_formatType = type; }
  std::int32_t SampleRate() const { return m_sampleRate; }
  void SetSampleRate(std::int32_t samplesPerSecond) { m_sampleRate = samplesPerSecond; }
  std::int32_t Channels() const { return m_channels; }
  void SetChannels(std::int32_t channels) { m_channels = channels; }
  std::int32_t BitsPerSample() const { return m_bitsPerSample; }  // of WAV; 0 for the compressed types
  void SetBitsPerSample(std::int32_t bits) { m_bitsPerSample = bits; }
  // Bits per second of the compressed types, 0 for WAV. An item loaded from a WMA file has kilobits here.
  std::int32_t BitRate() const { return m_bitRate; }
  void SetBitRate(std::int32_t bitsPerSecond) { m_bitRate = bitsPerSecond; }
  std::int32_t WAVFormatTag() const { return m_wavFormatTag; }
  void SetWAVFormatTag(std::int32_t tag) { m_wavFormatTag = tag; }
  const std::string& WMAProfile() const { return m_wmaProfile; }
  void SetWMAProfile(std::string profile) { m_wmaProfile = std::move(profile); }

  // The format in words for people, "WAV 44100 Hz stereo 16-bit", "MP3 44100 Hz stereo 128 kbit/s"; it tells
  // two WMA profiles apart.
  std::string FormatDescription() const;

  // The whole state as tag text: FormatType="WAV" SampleRate="44100" Channels="2" WAVFormatTag="1" ...
  // Members that are 0 or empty are left out when written; reading replaces the whole object.
  std::string SerialisedFormat() const;
  void SetSerialisedFormat(std::string_view text);

  friend bool operator==(const cAudioFormat&, const cAudioFormat&) = default;

 private:
  std::int32_t m_formatType = 0;
  std::int32_t m_sampleRate = 0;
  std::int32_t m_channels = 0;
  std::int32_t m_bitsPerSample = 0;
  std::int32_t m_bitRate = 0;
  std::int32_t m_wavFormatTag = 0;
  std::string m_wmaProfile;
};

}  // namespace qm
