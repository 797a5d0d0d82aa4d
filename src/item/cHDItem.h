#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "item/ItemFieldTypes.h"
#include "item/ItemVocabulary.h"
#include "kits/common/Colours.h"

namespace qm {

class cAudioFormat;
class cHDItemMark;
class cHDItemTimeExtra;
class Clock;
class XmlElement;
struct Platform;

// An audio item: one audio file with its timing marks and everything that is known about it. It holds no
// audio.
//
// Items are shared; host thread only. Indices count from 1: those of the three sets of timing marks, artists,
// descriptions and custom fields run from 1 to 3. A bad index reads as 0, "" or no object, and writes
// nothing. Times are seconds, dates serial day numbers (0 for none), times of day seconds after midnight. An
// item is not copied as a whole: its format, extras and markers are objects that callers may hold longer than
// the item.
class cHDItem {
 public:
  cHDItem();
  ~cHDItem();
  cHDItem(const cHDItem&) = delete;
  cHDItem& operator=(const cHDItem&) = delete;

  // X() and SetX(value), X(index) and SetX(index, value) of every field in the table.
#define QM_FIELD(Name, Kind, ...)                   \
  item_field::Read<item_field::Kind> Name() const { \
    return m_##Name;                                \
  }                                                 \
  void Set##Name(item_field::Kind value) {          \
    m_##Name = std::move(value);                    \
  }
#define QM_FIELDS(Name, Kind, ...)                                    \
  item_field::Read<item_field::Kind> Name(std::int32_t index) const { \
    return m_##Name.Get(index);                                       \
  }                                                                   \
  void Set##Name(std::int32_t index, item_field::Kind value) {        \
    m_##Name.Set(index, std::move(value));                            \
  }
#define QM_FIELD_OWN_SET(Name, Kind, ...)           \
  item_field::Read<item_field::Kind> Name() const { \
    return m_##Name;                                \
  }                                                 \
  void Set##Name(item_field::Kind value);
#define QM_FIELDS_OWN_SET(Name, Kind, ...)                            \
  item_field::Read<item_field::Kind> Name(std::int32_t index) const { \
    return m_##Name.Get(index);                                       \
  }                                                                   \
  void Set##Name(std::int32_t index, item_field::Kind value);
#define QM_EXTRA(Name, ...)                                          \
  std::shared_ptr<cHDItemTimeExtra> Name(std::int32_t index) const { \
    return m_##Name.Get(index);                                      \
  }
#include "item/cHDItemFields.def"
  // Setting TotalLength keeps every AudioEnd within it, and moves them all to it when it was not known
  // before. Setting AudioEnd pulls back Extro, HookEnd and IntroEnd of its set that lie behind it, and with
  // set 1 the loop. Setting IntroEnd or HookEnd pulls back its start. Setting a start moves nothing.

  // Derived lengths in seconds. A start below 0 counts as 0 in AudioLength; the others are plain differences.
  float AudioLength(std::int32_t index) const;
  float IntroLength(std::int32_t index) const;
  float HookLength(std::int32_t index) const;

  // Title, artists and descriptions that are not empty, with a blank between.
  std::string FullDescription() const;

  // Plays, in the order in which they were added. References are those of the players' terminals.
  std::int16_t NumberLastPlays() const;
  void ClearLastPlays();
  // The new count, or 0 when nothing was added because dtPlayed (a serial date-time) is 0.
  std::int16_t AddLastPlay(double dtPlayed, const std::string& Reference);
  bool RemoveLastPlay(std::int32_t index);
  double LastPlay(std::int32_t index) const;
  std::string LastPlayReference(std::int32_t index) const;

  // EndType as a word. Writing takes a word of any description type.
  std::string EndTypeDescription(enItemDescType DescriptionType) const;
  void SetEndTypeDescription(enItemDescType DescriptionType, const std::string& word);

  // Owned by the item, never absent.
  std::shared_ptr<cAudioFormat> AudioFormat() const {
    return m_audioFormat;
  }

  // For the library's own readers: a new format object. Who holds the old one keeps it as it was.
  void ReplaceAudioFormat(const cAudioFormat& format);

  // The next version; 1 and 31 are never given.
  void IncrementVersion();

  // All compared fields, the format and the extras are equal, without tolerance, and with TestLastPlays the
  // plays. Markers, file length and existence, and the time of the last refresh take no part. False for no
  // object.
  bool IsSame(const std::shared_ptr<const cHDItem>& other, bool TestLastPlays) const;

  // Fills the item from its audio file: format, length, marks, and what the carriers that flags name hold of
  // it. Marks that the file does not tell lie as if there were none: audio over the whole file, extro at its
  // end, empty intro and hook at 0. Fields that the file does not hold stay. False, with nothing changed, for
  // a file that is missing or empty; and with the marks reset, for one that was not understood.
  bool LoadFromFile(const std::string& Filename, enHDFileFlags flags = llfAutoDetect);
  // Writes the metadata into the audio file, whose audio stays as it is: in a WAV file into the chunks that
  // flags name of llfBext and llfCartChunk. Sets the item's name and length of the file, and in a WAV file
  // what it lacks of origin and producer. Its peak file stays valid. False when nothing was written; a WAV
  // file that could not be opened is told by the platform's message box (without a platform, the default).
  bool SaveToFile(const std::string& Filename, enHDFileFlags flags, const Platform* platform = nullptr);
  // The marker list in a file of its own, ".pmk", which is appended to a name without it. Loading replaces
  // the list; false, with nothing changed, for no file. Saving no markers deletes the file and gives false.
  // Colours are not kept.
  bool LoadMarkersFromFile(std::string& MarkFilename);
  bool SaveMarkersToFile(std::string& MarkFilename) const;

  // The item as one line of tag text: the fields of the groups that InfoAvailable names, each only where it
  // says something.
  std::string Serialisation() const;
  // Reads such a text, or one in the older long form. Fields that the text does not hold become 0 or "",
  // plays are added to those the item has. Not everything that is written comes back: DABNotes, colours, and
  // the extras of intros are read by other keys than they are written with, and an extra of an audio start or
  // an extro takes the place of that mark. False, with nothing changed, for an empty text.
  bool SetSerialisation(std::string strNewValue);
  // A new element "hditem" for others to read, in no document.
  std::shared_ptr<XmlElement> XML() const;

  // The marker list, kept in the order of StartSample. Markers are shared with the caller. A MarkerType of 0
  // means all.
  std::int32_t NumberMarkers(std::int32_t MarkerType = 0) const;
  std::shared_ptr<cHDItemMark> Marker(std::int32_t index) const;
  void SetMarker(std::int32_t index,
                 const std::shared_ptr<cHDItemMark>& mark);  // in its place, without sorting
  std::vector<std::shared_ptr<cHDItemMark>> Markers(std::int32_t MarkerType = 0) const;
  std::shared_ptr<cHDItemMark> GetFirstMarkerByType(std::int32_t MarkerType) const;
  // The new marker's index, or -1 for no object.
  std::int32_t AddMarker(const std::shared_ptr<cHDItemMark>& NewMarker);
  bool RemoveMarker(std::int32_t index);
  void ClearMarkers();
  // Replaces the list by markers for intros, hooks, extros and the loop. False, with the list empty, while
  // the sample rate or the total length is not known.
  bool CreateMarkersFromTiming();

  // For other classes of the library: whether there is a play less than a span before now, by that Reference
  // unless it is empty. Mode 1: the span is Value seconds; 2: Value times AudioLength(1); any other: never.
  // At most one second less than a day counts. Without a clock, the system's.
  bool WasPlayedRecently(std::int16_t Mode, float Value, const std::string& Reference = "",
                         const Clock* clock = nullptr) const;

 private:
  struct Play {
    double played = 0;  // serial date-time
    std::string reference;
    friend bool operator==(const Play&, const Play&) = default;
  };

  void AddTimingMarker(const char* title, std::int32_t set, enHDItemMarkTypes type, double start, double end);
  bool SameExtras(const cHDItem& other) const;

#define QM_FIELD(Name, Kind, Default, ...) item_field::Kind m_##Name = Default;
#define QM_FIELDS(Name, Kind, ...) item_field::Triple<item_field::Kind> m_##Name;
#define QM_EXTRA(Name, ...) item_field::Triple<std::shared_ptr<cHDItemTimeExtra>> m_##Name;
#include "item/cHDItemFields.def"
  std::shared_ptr<cAudioFormat> m_audioFormat;
  std::vector<Play> m_plays;
  std::vector<std::shared_ptr<cHDItemMark>> m_markers;
};

}  // namespace qm
