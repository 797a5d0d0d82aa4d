#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "audio/AudioFileTypes.h"
#include "audio/cCopyAudioFileNCT.h"
#include "cli/CopyOptions.h"
#include "cli/CopyProgress.h"
#include "cli/Failure.h"
#include "cli/StopSignals.h"
#include "kits/common/Dates.h"
#include "kits/sound/cAudioFile.h"

namespace qm::cli {

namespace {

using Json = nlohmann::ordered_json;

// What each channel usually gets at a sample rate, in every compressed type.
std::int32_t UsualBitRate(const cAudioFormat& format) {
  const std::int32_t rate = format.SampleRate();
  return format.Channels() * (rate >= 32000 ? 96000 : rate >= 16000 ? 48000 : 24000);
}

void ChooseBits(cAudioFormat& format, const cAudioFormat& source, std::int32_t asked) {
  const bool plain =
      source.FormatType() == aftWAV && (source.WAVFormatTag() == wftPCM || source.WAVFormatTag() == wftFloat);
  const bool own = plain && asked == 0;
  format.SetWAVFormatTag(own ? source.WAVFormatTag() : static_cast<std::int32_t>(wftPCM));
  format.SetBitsPerSample(own ? source.BitsPerSample() : asked != 0 ? asked : 16);
}

std::shared_ptr<cAudioFormat> DestFormat(const CopyOptions& options, const cAudioFormat& source) {
  const auto format = std::make_shared<cAudioFormat>();
  format->SetFormatType(GetTypeForFile(options.paths.back()));
  format->SetSampleRate(options.rate != 0 ? options.rate : source.SampleRate());
  format->SetChannels(options.channels != 0 ? options.channels : std::min(source.Channels(), 2));
  if (format->FormatType() == aftWAV) {
    ChooseBits(*format, source, options.bits);
    return format;
  }
  const bool same = source.FormatType() == format->FormatType() &&
                    source.SampleRate() == format->SampleRate() && source.Channels() == format->Channels();
  format->SetBitRate(options.bitRate != 0           ? options.bitRate * (options.bitRate < 1000 ? 1000 : 1)
                     : same && source.BitRate() > 0 ? source.BitRate()
                                                    : UsualBitRate(*format));
  return format;
}

// Every source is looked at before any is copied; the first one's format is the one to follow.
bool LookAtSources(const std::vector<std::string>& sources, cAudioFormat& first) {
  for (std::size_t i = 0; i < sources.size(); ++i) {
    cAudioFile file;
    file.AllowCompressedOpen(true);
    if (file.OpenForRead(sources[i]) != afeNone) {
      TellFailure(file.ErrorText());
      return false;
    }
    if (i == 0) first = file.Format();
  }
  return true;
}

std::string Failure(const cCopyAudioFileNCT& copier, const std::string& path) {
  if (!copier.LastErrorDetail().empty() && copier.LastErrorCode() == cerDestinationNotCreated)
    return copier.LastErrorDetail();
  std::string text = "'" + path + "': " + copier.GetLastErrorDescription();
  if (copier.LastErrorCode() == cerSampleRateInvalid) text += "; --rate chooses another";
  return text;
}

// "" when all went well.
std::string CopyAll(const CopyOptions& options, const std::vector<std::string>& sources,
                    cCopyAudioFileNCT& copier, CopyProgress& progress) {
  for (std::size_t i = 0; i < sources.size(); ++i) {
    progress.Next(i + 1);
    const bool last = i + 1 == sources.size();
    const std::int32_t code = copier.AddFile(sources[i], options.start, options.end, last ? 0 : options.mix);
    if (code != cerOK) return Failure(copier, sources[i]);
    if (copier.SourceBrokeOff()) return "'" + sources[i] + "' breaks off: " + copier.LastErrorDetail();
  }
  copier.FinishDestAudioFile();
  return copier.LastErrorCode() == cerOK ? "" : Failure(copier, options.paths.back());
}

void Tell(const CopyOptions& options, const cCopyAudioFileNCT& copier,
          const std::vector<std::string>& sources, const cAudioFormat& format) {
  const auto seconds = static_cast<double>(copier.DestinationDuration());
  if (options.printing == epForPeople) {
    fmt::print("{}\n  {}\n  {}\n", options.paths.back(), format.FormatDescription(),
               SecondsToText(seconds, ettDuration, true));
    return;
  }
  const Json document{{"file", options.paths.back()},
                      {"format", format.FormatDescription()},
                      {"seconds", seconds},
                      {"sources", sources}};
  fmt::print("{}\n", document.dump(2, ' ', false, Json::error_handler_t::replace));
}

}  // namespace

std::int32_t Copy(const CopyOptions& options) {
  const StopSignals signals;
  const std::vector<std::string> sources(options.paths.begin(), options.paths.end() - 1);
  cAudioFormat first;
  if (!LookAtSources(sources, first)) return exsFailed;
  const auto format = DestFormat(options, first);

  cCopyAudioFileNCT copier;
  copier.SetNormalise(options.normalise.has_value());
  copier.SetNormalisePercentage(options.normalise.value_or(100));
  copier.SetAutoTop(options.autoTop.has_value());
  copier.SetAutoTopThreshold(options.autoTop.value_or(1));
  copier.SetMixVolume(options.mixVolume);
  if (copier.CreateDestinationFile(options.paths.back(), format) != cerOK) {
    TellFailure(Failure(copier, sources[0]));
    return exsFailed;
  }
  CopyProgress progress(copier, signals, sources.size());
  const std::string failure = CopyAll(options, sources, copier, progress);
  progress.Clear();
  if (!failure.empty()) copier.AbandonDestAudioFile();
  if (progress.EndedBy() != 0) return exsSignal + progress.EndedBy();
  if (failure.empty()) return Tell(options, copier, sources, *format), exsDone;
  TellFailure(failure);
  return exsFailed;
}

}  // namespace qm::cli
