#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "audio/CopyErrors.h"
#include "kits/common/Event.h"

namespace qm {

class CopyDestination;
class RetainedAudio;
class cAudioFormat;
struct CopySource;

// Builds one audio file from stretches of one or more others: converts sample rate, channels and file type,
// scales each source to a level, cuts silence off its start, and holds back its end to mix it under the start
// of the next. Host thread only. Codes are those of enCopyError, texts by GetLastErrorDescription.
//
// Audio stays float from reading to writing. It is rounded once, to nearest and without dither: what is
// neither scaled, resampled nor mixed keeps every bit that the destination can hold, silence stays silent,
// and a copy repeats itself exactly. Samples of a source that are no number read 0, infinite ones full scale.
//
// The destination grows beside its path and takes its place at FinishDestAudioFile: until then, and for good
// when it is abandoned or could not be written, what was at the path stays.
//
// Work runs within its call and raises events, in which a listener may set Cancel: the call then ends at once
// with cerCancelled. From an event CreateDestinationFile, AddFile and CopyAudioFile are refused with
// cerDestinationInvalid; FinishDestAudioFile, AbandonDestAudioFile and Terminate cancel the work and are
// carried out behind it. A listener must not destroy the object.
class cCopyAudioFileNCT {
 public:
  cCopyAudioFileNCT();
  ~cCopyAudioFileNCT();
  cCopyAudioFileNCT(const cCopyAudioFileNCT&) = delete;
  cCopyAudioFileNCT& operator=(const cCopyAudioFileNCT&) = delete;

  // Each raised for every pass over a source: the normalising pass, if one is wanted, and the copy.
  struct Events {
    Event<bool&> CopyStarted;  // Cancel
    Event<std::int16_t, bool&>
        CopyProgress;      // whole per cent, only when it changes, and 100 at the end; Cancel
    Event<> CopyFinished;  // not of a pass that was cancelled before its end
  } events;

  // Opens a destination. Rates are 8000, 11025, 22050, 32000, 33075, 44100, 48000 and 96000 Hz; channels 1 or
  // 2. WAV is written in the bits per sample of the format, 16 (or 32, of float) where it states none, and as
  // MPEG inside WAV for the tags 0x50 and 0x55. A destination already open is finished first.
  std::int32_t CreateDestinationFile(const std::string& DestFile,
                                     const std::shared_ptr<cAudioFormat>& Format);

  // Appends a stretch of a source, in its seconds; -1 means its own start and end. The last RetainSeconds of
  // it are held back for the next AddFile. Whatever the result, the destination stays open with what was
  // written. A source that breaks off gives what was there and no error; see SourceBrokeOff.
  std::int32_t AddFile(const std::string& SourceFile, float StartPosition = -1, float EndPosition = -1,
                       float RetainSeconds = -1);

  // Writes what is still held back, unmixed, and closes. cerDestinationNotCreated in LastErrorCode when the
  // file could not be written to its end.
  void FinishDestAudioFile();
  // Closes; nothing is left of the file.
  void AbandonDestAudioFile();

  // All of it at once. An absent format is the source's; one without a type, or of the source's type, takes
  // what it leaves open (0) from the source. SourceDuration receives the source's seconds on success.
  std::int32_t CopyAudioFile(const std::string& SourceFile, const std::string& DestFile,
                             const std::shared_ptr<cAudioFormat>& Format, float StartPosition,
                             float EndPosition, float& SourceDuration);
  std::int32_t CopyAudioFile(const std::string& SourceFile, const std::string& DestFile,
                             const std::shared_ptr<cAudioFormat>& Format, float StartPosition = -1,
                             float EndPosition = -1);

  std::int32_t LastErrorCode() const { return m_lastError; }
  std::string GetLastErrorDescription() const { return CopyErrorText(m_lastError); }
  // What the system or a decoder said to the last failure, one line; "" where there is nothing to add.
  const std::string& LastErrorDetail() const { return m_detail; }
  // Whether the source of the last copy could not be read to the end of the stretch.
  bool SourceBrokeOff() const { return m_sourceBrokeOff; }

  const std::string& SourceFilename() const { return m_sourceFilename; }  // "" when idle
  const std::string& DestFileName() const { return m_destFileName; }      // "" when none is open
  float DestinationDuration() const;                                      // seconds written so far

  // Kept for the host; the class itself makes no use of it.
  const std::string& CopyDescription() const { return m_copyDescription; }
  void SetCopyDescription(std::string description) { m_copyDescription = std::move(description); }

  // Per cent of full scale unless said otherwise. A copy under way keeps those it began with.
  struct Settings {
    bool Normalise = false;
    float NormalisePercentage = 100;
    bool AutoTop = false;
    float AutoTopThreshold = 1;
    float MixVolume = 75;  // per cent of each of the two
  };
  const Settings& Choices() const { return m_settings; }
  bool Normalise() const { return m_settings.Normalise; }
  void SetNormalise(bool normalise) { m_settings.Normalise = normalise; }
  float NormalisePercentage() const { return m_settings.NormalisePercentage; }
  void SetNormalisePercentage(float percent);  // limited to 0.00001 .. 500
  bool AutoTop() const { return m_settings.AutoTop; }
  void SetAutoTop(bool autoTop) { m_settings.AutoTop = autoTop; }
  float AutoTopThreshold() const { return m_settings.AutoTopThreshold; }
  void SetAutoTopThreshold(float percent);  // limited to 0.00001 .. 100
  float MixVolume() const { return m_settings.MixVolume; }
  void SetMixVolume(float percent);  // limited to 0.00001 .. 100

  // Finishes an open destination. Also done by the destructor.
  void Terminate();

 private:
  enum class Leave : std::uint8_t { no, finish, abandon };

  template <class Work>
  std::int32_t Operation(const char* name, Work work);
  enCopyError Create(const std::string& path, const cAudioFormat* format);
  enCopyError Add(const std::string& path, float start, float end, float retain);
  enCopyError OpenSource(const std::string& path, CopySource& source);
  enCopyError CopyStretchOf(const std::string& path, CopySource& source, float start, float end,
                            float retain);
  enCopyError CopyOnce(const std::string& sourceFile, const std::string& destFile, const cAudioFormat* format,
                       float start, float end, float& duration);
  void CloseDestination(Leave how);
  void LeaveDestination(Leave how);

  Settings m_settings;
  std::string m_copyDescription, m_sourceFilename, m_destFileName, m_detail;
  std::unique_ptr<CopyDestination> m_destination;
  std::unique_ptr<RetainedAudio> m_retained;
  std::int32_t m_lastError = cerOK;
  bool m_sourceBrokeOff = false;
  bool m_working = false;
  Leave m_leave = Leave::no;  // asked for while working
  bool m_stop = false;        // then true until it is done
};

}  // namespace qm
