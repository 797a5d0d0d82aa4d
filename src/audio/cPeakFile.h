#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "audio/qmPeakFileHeader.h"
#include "kits/common/Clock.h"
#include "kits/common/Event.h"

namespace qm {

struct tyPeakFileWork;

enum enPeakFileErr : std::int32_t {
  pfeOK = 0,
  pfeInvalidAudioFile = -1,
  pfeInvalidPeakFile = -2,
  pfeOpenAudioFileFail = -5,
  pfeOpenDestFileFail = -10,
  pfeCancelled = -255,
};

// The points from which a waveform is drawn: one frame in every 500 of an audio file, kept in a small file
// beside it. Makes that file, tells whether it still belongs to its audio, loads it and hands out its points.
// Host thread only. Format of the file and rules of its validity: docs/peak-files.md.
//
// Wherever a PeakFile is empty, the file "<name>.ppk" in the folder "Peakfiles" beside the audio is meant,
// and its path is put into the argument. A scan runs within its call and raises events; a listener may cancel
// it, and must not destroy the object.
class cPeakFile {
 public:
  explicit cPeakFile(std::shared_ptr<Clock> clock = SystemClock());
  ~cPeakFile();
  cPeakFile(const cPeakFile&) = delete;
  cPeakFile& operator=(const cPeakFile&) = delete;

  struct Events {
    Event<> ScanAudioStart;
    Event<std::int16_t> ScanAudioProgress;  // whole per cent; only when it changes, and 100 at the end
    Event<> ScanAudioEnd;                   // also of a cancelled scan; LastErrorCode() is set
  } events;

  // Whether the peak file belongs to the audio file as that is now.
  bool CheckPeakFileValid(const std::string& AudioFile, std::string& PeakFile) const;
  bool CheckPeakFileValid(const std::string& AudioFile, const std::string& PeakFile = {}) const;

  // Of the last scan or read. The two texts differ: the first is short, the second is for the user, "" for
  // pfeOK.
  std::string GetLastErrorDescription() const;
  enPeakFileErr LastErrorCode() const { return m_lastError; }
  std::string LastErrorDescription() const;

  bool Scanning() const { return m_scanning; }
  // Ends the scan that is running. Without one it stays requested until the next scan begins, and a peak file
  // read before then is deleted behind it.
  void CancelScanning() { m_cancelRequested = true; }

  // Of the points loaded; empty before any were.
  qmPeakFileHeader Header() const;

  // Makes the peak file and loads it. Unless forced, a valid one ends the call: no events, nothing loaded.
  // A cancelled scan deletes the peak file. Audio that cannot be read to its end gives the points so far.
  enPeakFileErr ScanAudioFile(const std::string& AudioFile, std::string& PeakFile, bool ForceScan = false);
  enPeakFileErr ScanAudioFile(const std::string& AudioFile, const std::string& PeakFile = {},
                              bool ForceScan = false);

  // Loads the audio file's own peak file, making it first when it is not valid and AutoCreate is set.
  enPeakFileErr ReadAudioPeakFile(const std::string& AudioFile, bool AutoCreate);

  // Loads a peak file, valid or not. One that is empty or cannot be opened is deleted, and the points loaded
  // before stay.
  enPeakFileErr ReadPeakFile(const std::string& PeakFile);

  // Points of NumberSamples frames from frame StartSample (from 1): both channels of each point in turn, as
  // many as there are up to the end. False, with arrSamples left as it was, when there are none.
  bool GetSamples(std::int32_t StartSample, std::int32_t NumberSamples,
                  std::vector<std::int16_t>& arrSamples) const;

  // After a change to the audio file that left its sound alone: takes its present date, and its present size
  // when ForceUpdateLength is set, so that the peak file stays valid. A size that differs is refused
  // otherwise. Leaves the last error and the points loaded alone.
  enPeakFileErr UpdatePeakFileHeader(const std::string& AudioFile, std::string& PeakFile,
                                     bool ForceUpdateLength = false) const;
  enPeakFileErr UpdatePeakFileHeader(const std::string& AudioFile, const std::string& PeakFile = {},
                                     bool ForceUpdateLength = false) const;

  // Kept for the host; the class itself makes no use of it.
  const std::string& ProgressDescription() const { return m_progressDescription; }
  void SetProgressDescription(std::string description) { m_progressDescription = std::move(description); }

  // Frees the points.
  void Terminate();

 private:
  enPeakFileErr Scan(const std::string& audioFile, std::string& peakFile, bool force);
  void ScanBlocks(tyPeakFileWork& work);
  void EndScan(tyPeakFileWork& work);
  enPeakFileErr Read(const std::string& peakFile);
  enPeakFileErr Fail(enPeakFileErr error) { return m_lastError = error; }

  std::shared_ptr<Clock> m_clock;
  enPeakFileErr m_lastError = pfeOK;
  bool m_scanning = false;
  bool m_cancelRequested = false;
  qmPeakFileHeader m_header;
  std::vector<std::int16_t> m_points;
  std::string m_progressDescription;
};

}  // namespace qm
