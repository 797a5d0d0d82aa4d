#include "audio/CopyFormat.h"

#include <algorithm>

#include "kits/sound/cAudioFormat.h"

namespace qm {
namespace {

constexpr std::int32_t kSampleRates[] = {8000, 11025, 22050, 32000, 33075, 44100, 48000, 96000};

struct Member {
  std::int32_t (cAudioFormat::*get)() const;
  void (cAudioFormat::*set)(std::int32_t);
};

constexpr Member kMembers[] = {
    {&cAudioFormat::SampleRate, &cAudioFormat::SetSampleRate},
    {&cAudioFormat::Channels, &cAudioFormat::SetChannels},
    {&cAudioFormat::BitRate, &cAudioFormat::SetBitRate},
};

}  // namespace

enCopyError CheckCopyFormat(const cAudioFormat& format) {
  if (format.FormatType() <= 0) return cerFormatTypeInvalid;
  if (std::ranges::find(kSampleRates, format.SampleRate()) == std::end(kSampleRates))
    return cerSampleRateInvalid;
  if (format.Channels() < 1 || format.Channels() > 2) return cerChannelsInvalid;
  return cerOK;
}

cAudioFormat CompleteCopyFormat(const cAudioFormat& format, const cAudioFormat& source) {
  cAudioFormat complete = format;
  if (complete.FormatType() == 0) complete.SetFormatType(source.FormatType());
  if (complete.FormatType() != source.FormatType()) return complete;
  for (const Member& member : kMembers)
    if ((complete.*member.get)() == 0) (complete.*member.set)((source.*member.get)());
  // Bits belong to a tag: a format that names its own tag has that one's usual bits.
  if (complete.WAVFormatTag() == 0) {
    complete.SetWAVFormatTag(source.WAVFormatTag());
    if (complete.BitsPerSample() == 0) complete.SetBitsPerSample(source.BitsPerSample());
  }
  const bool sameSound =
      complete.SampleRate() == source.SampleRate() && complete.Channels() == source.Channels();
  if (complete.WMAProfile().empty() && format.BitRate() == 0 && sameSound)
    complete.SetWMAProfile(source.WMAProfile());
  return complete;
}

}  // namespace qm
