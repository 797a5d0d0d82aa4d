#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "audio/PeakFileLayout.h"

namespace qm {

class AudioFileTarget;
class cAudioFile;
class Clock;
enum enPeakFileErr : std::int32_t;

enum class PeakFileKeep : std::uint8_t { discard, keep };

// One scan at work: the audio being read and the peak file being written.
struct tyPeakFileWork {
  tyPeakFileWork();
  ~tyPeakFileWork();

  // Opens the audio and puts down in the header what it says. 0 or the audio file's error number.
  std::int32_t OpenAudioForScan(const Clock& clock);
  // Starts the peak file beside its place, which it takes on close: until then, whatever happens, what stands
  // there is a whole file. The folder must exist.
  enPeakFileErr CreatePeakFile();
  void AddPoint(const std::int16_t* point);
  // Closes both files. Kept, the peak file gets its final header and takes its place, else the one in that
  // place is deleted. False when the file could not be written.
  bool ClosePeakWork(PeakFileKeep keep);

  std::string AudioFile;
  std::string PeakFile;
  std::unique_ptr<cAudioFile> AudioReader;
  PeakFileHeader Header;

 private:
  bool WritePeakFile();

  std::unique_ptr<AudioFileTarget> m_file;
  std::string m_image;  // header and points, as in the file
};

// "Peakfiles" beside the audio file, its name with ".ppk"; "" for "".
std::string DefaultPeakFile(const std::string& audioFile);

// Whether the peak file belongs to the audio file as it is now.
bool IsPeakFileValid(const std::string& audioFile, const std::string& peakFile);

// A file's length as the header holds it.
std::int32_t PeakHeaderFileSize(std::int64_t bytes);

// Deletes a file; never a folder or a device.
void DeletePeakFile(const std::string& path);

}  // namespace qm
