#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "kits/sound/cAudioFormat.h"

namespace qm {

// How CreateFile writes.
enum enCreationMode : std::int32_t { ecmWAV = 1, ecmMP3 = 2, ecmOgg = 4, ecmWMA = 11, ecmMP2 = 12 };

// Error numbers of cAudioFile; 0 is success.
enum enAudioFileError : std::int32_t {
  afeNone = 0,
  afeCannotOpen = 1,   // the system refuses the path
  afeNotAFile = 2,     // a folder, a device, a pipe
  afeEmpty = 3,        // no bytes
  afeUnknownType = 4,  // not one of the five types
  afeUnsupported = 5,  // one of them, holding something that cannot be decoded
  afeCompressed = 6,   // needs AllowCompressedOpen
  afeDamaged = 7,      // audio that cannot be read
  afeBadSettings = 8,  // CreateFile: mode, rate, channels or bit rate that the type does not have
  afeCannotWrite = 9,  // the system or the encoder refuses
  afeNotOpen = 10,
};

// An MPEG Layer 3 encoder's settings.
struct tyMP3Settings {
  std::int32_t SampleRate = 44100;
  std::int32_t BitRate = 128000;  // bits per second
  std::int32_t Channels = 2;
  bool VariableBitRate = false;
};

// An open audio file: decoded reading with exact seek, or encoded writing.
//
// One object belongs to one thread at a time; objects are independent of each other. Operations answer with 0
// or an error number; ErrorText() then says what was wrong in one line. Frames are samples per channel,
// interleaved in every buffer. Memory use does not depend on the length of the file. Closed by the
// destructor.
class cAudioFile {
 public:
  cAudioFile();
  ~cAudioFile();
  cAudioFile(const cAudioFile&) = delete;
  cAudioFile& operator=(const cAudioFile&) = delete;

  // Lets OpenForRead take Windows Media files and WAV files that hold compressed audio. Call it before.
  void AllowCompressedOpen(bool allow);

  // Opens for reading; whatever was open is closed first. The last two arguments are reserved (0 and 1).
  // The type is told from the contents, not from the name.
  std::int32_t OpenForRead(const std::string& path, std::int32_t reserved = 0, std::int32_t mode = 1);

  // Creates or replaces a file for writing, in the format given before by the settings calls.
  // Frames written go beside it and take its place at Close, so that a failure leaves what was there.
  std::int32_t CreateFile(const std::string& path, std::int32_t mode);

  // Finishes a file being written (0, or an error number with the old file left in place); safe at any time.
  std::int32_t Close();

  // Closes; a file being written is given up, and what was at its path stays.
  void Abandon();

  bool IsOpen() const;

  // Up to count frames from where reading stands; an empty result means the end or, with LastError() not 0,
  // audio that cannot be read further. 16-bit values, rounded and clipped from what the file holds.
  void ReadSamples(std::int32_t count, std::vector<std::int16_t>& samples);

  // The same as float, full scale 1, unclipped: 16-bit sources give exactly value / 32768. Writes at most
  // `frames` frames of Channels() samples into `interleaved`; returns how many. 0: the end, or an error
  // (LastError()).
  std::size_t ReadFrames(float* interleaved, std::size_t frames);

  // The next frame read is `frame` (from 0), with the very samples a whole decode has there. Clamped to
  // NumberSamples(). False when the file cannot be positioned.
  bool Seek(std::int64_t frame);

  // Appends frames of the channel count set for writing; 0 or an error number.
  std::int32_t WriteSamples(const std::int16_t* interleaved, std::size_t frames);
  std::int32_t WriteFrames(const float* interleaved, std::size_t frames);
  // The same for bytes that a WAV file of Format() stores just so: for samples that float cannot carry.
  std::int32_t WriteStored(const std::uint8_t* stored, std::size_t frames);

  // Settings for CreateFile. SetTemplateWAV reads the format chunk of an existing WAV file.
  std::int32_t SetTemplateWAV(const std::string& path);
  void SetWAVSettings(std::int32_t sampleRate, std::int32_t channels, std::int32_t bits,
                      std::int32_t formatTag);
  void SetMP3Settings(const tyMP3Settings& settings);
  void SetOggSettings(std::int32_t rate, std::int32_t channels, std::int32_t bitRate,
                      std::int32_t minimumBitRate = 0, std::int32_t maximumBitRate = 0, bool managed = true);
  void SetWMAProfile(const std::string& profile);  // "44100,2,128000": rate, channels, bits per second
  void SetMP2Settings(std::int32_t rate, std::int32_t bitRate, std::int32_t channels);

  std::int64_t NumberSamples() const;  // exact length in frames, encoder delay and padding taken off
  std::int32_t SampleRate() const;
  std::int32_t Channels() const;
  double LengthMilliseconds() const;  // NumberSamples() / SampleRate() * 1000
  const cAudioFormat& Format() const;

  std::int32_t LastError() const;
  const std::string& ErrorText() const;

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

}  // namespace qm
