#include "audio/AudioFileTypes.h"

#include <algorithm>

#include "kits/common/Files.h"
#include "kits/common/Text.h"
#include "kits/sound/cAudioFile.h"

namespace qm {
namespace {

constexpr AudioFileTypeRow kTypes[] = {
    {aftWAV, "wav", "Windows WAV", " (WAV)", ecmWAV, "audio/x-wav"},
    {aftMP3, "mp3", "MPEG Layer 3", " (mp3)", ecmMP3, "audio/mpeg"},
    {aftOgg, "ogg", "Ogg Vorbis", " (Ogg)", ecmOgg, "audio/ogg"},
    {aftWMA, "wma", "Windows Media Audio", " (WMA)", ecmWMA, "audio/x-ms-wma"},
    {aftMP2, "mp2", "MPEG Layer 2", " (mp2)", ecmMP2, "audio/mpeg"},
};

constexpr SampleRateRow kSampleRates[] = {
    {8000, "8,000Hz"},   {11025, "11,025Hz"}, {22050, "22,050Hz"}, {33075, "33,075Hz"},
    {44100, "44,100Hz"}, {48000, "48,000Hz"}, {96000, "96,000Hz"},
};

}  // namespace

std::span<const AudioFileTypeRow> AudioFileTypes() {
  return kTypes;
}

const AudioFileTypeRow* FindAudioFileType(std::int32_t type) {
  const auto* found = std::ranges::find(kTypes, type, &AudioFileTypeRow::type);
  return found == std::end(kTypes) ? nullptr : found;
}

std::string GetExtensionForType(std::int32_t type) {
  const AudioFileTypeRow* row = FindAudioFileType(type);
  return row == nullptr ? std::string() : std::string(row->extension);
}

std::int32_t GetTypeForFile(std::string_view path) {
  const std::string extension = LowerCase(ExtensionOf(path));
  const auto* found = std::ranges::find(kTypes, extension, &AudioFileTypeRow::extension);
  return found == std::end(kTypes) ? static_cast<std::int32_t>(aftOther) : found->type;
}

std::span<const SampleRateRow> SampleRatesForLists() {
  return kSampleRates;
}

}  // namespace qm
