#pragma once
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// The vocabulary of file types and sample rates that lists and file names use.
namespace qm {

// One row for each type of enAudioFileType that can be written.
struct AudioFileTypeRow {
  std::int32_t type;             // enAudioFileType
  std::string_view extension;    // lower case, without the point
  std::string_view description;  // "Windows WAV"
  std::string_view suffix;       // behind a file's name in lists: " (WAV)"
  std::int32_t creationMode;     // enCreationMode
  std::string_view mimeName;
};

// Every row, WAV first.
std::span<const AudioFileTypeRow> AudioFileTypes();
// Null for a type that has no row.
const AudioFileTypeRow* FindAudioFileType(std::int32_t type);

// "" for a type that has no row.
std::string GetExtensionForType(std::int32_t type);
// By the name alone; aftOther for an extension that no row has, and for none.
std::int32_t GetTypeForFile(std::string_view path);

struct SampleRateRow {
  std::int32_t samplesPerSecond;
  std::string_view text;  // "44,100Hz"
};

// The sample rates that lists offer, lowest first.
std::span<const SampleRateRow> SampleRatesForLists();

}  // namespace qm
