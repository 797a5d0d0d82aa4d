#include "kits/sound/cAudioFormat.h"

#include "kits/common/Numbers.h"
#include "kits/common/TagText.h"
#include "kits/common/Text.h"

namespace qm {

namespace {

struct TypeName {
  std::int32_t type;
  std::string_view name;
};

constexpr TypeName kTypeNames[] = {
    {aftOther, "Other"}, {aftWAV, "WAV"}, {aftMP3, "MP3"}, {aftOgg, "Ogg"}, {aftWMA, "WMA"}, {aftMP2, "MP2"},
};

std::string_view NameOfType(std::int32_t type) {
  for (const TypeName& row : kTypeNames)
    if (row.type == type) return row.name;
  return "";
}

std::int32_t TypeOfName(std::string_view name) {
  for (const TypeName& row : kTypeNames)
    if (EqualIgnoringCase(row.name, name)) return row.type;
  return ParseWhole(name);
}

struct NumberField {
  const char* key;
  std::int32_t (cAudioFormat::*get)() const;
  void (cAudioFormat::*set)(std::int32_t);
};

constexpr NumberField kNumberFields[] = {
    {"SampleRate", &cAudioFormat::SampleRate, &cAudioFormat::SetSampleRate},
    {"Channels", &cAudioFormat::Channels, &cAudioFormat::SetChannels},
    {"WAVFormatTag", &cAudioFormat::WAVFormatTag, &cAudioFormat::SetWAVFormatTag},
    {"BitsPerSample", &cAudioFormat::BitsPerSample, &cAudioFormat::SetBitsPerSample},
    {"BitRate", &cAudioFormat::BitRate, &cAudioFormat::SetBitRate},
};

std::string ChannelsText(std::int32_t channels) {
  if (channels == 1) return "mono";
  if (channels == 2) return "stereo";
  return NumberText(channels) + " channels";
}

void AppendWord(std::string& text, std::string_view word) {
  if (word.empty()) return;
  if (!text.empty()) text += ' ';
  text += word;
}

}  // namespace

std::string cAudioFormat::FormatDescription() const {
  std::string text(NameOfType(m_formatType));
  if (m_sampleRate != 0) AppendWord(text, NumberText(m_sampleRate) + " Hz");
  if (m_channels != 0) AppendWord(text, ChannelsText(m_channels));
  if (m_bitsPerSample != 0) AppendWord(text, NumberText(m_bitsPerSample) + "-bit");
  if (m_wavFormatTag == wftFloat) AppendWord(text, "float");
  // No audio has less than a kilobit a second: such a figure is in kilobits already.
  if (m_bitRate != 0)
    AppendWord(text, NumberText(m_bitRate < 1000 ? m_bitRate : (m_bitRate + 500) / 1000) + " kbit/s");
  return text;
}

std::string cAudioFormat::SerialisedFormat() const {
  std::string text;
  if (m_formatType != 0) {
    std::string_view name = NameOfType(m_formatType);
    text =
        AppendTag(text, "FormatType", name.empty() ? NumberText(m_formatType) : std::string(name), "=", true);
  }
  for (const NumberField& field : kNumberFields) {
    std::int32_t value = (this->*field.get)();
    if (value != 0) text = AppendTag(text, field.key, NumberText(value), "=", true);
  }
  if (!m_wmaProfile.empty()) text = AppendTag(text, "WMAProfile", m_wmaProfile, "=", true);
  return text;
}

void cAudioFormat::SetSerialisedFormat(std::string_view text) {
  *this = {};
  m_formatType = TypeOfName(GetTagValue(text, "FormatType"));
  for (const NumberField& field : kNumberFields) (this->*field.set)(ParseWhole(GetTagValue(text, field.key)));
  m_wmaProfile = GetTagValue(text, "WMAProfile", "=", true);
}

}  // namespace qm
