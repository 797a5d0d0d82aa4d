#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "audio/cPeakFile.h"
#include "cli/Failure.h"
#include "cli/ItemFile.h"
#include "cli/LongWork.h"
#include "cli/PeakScan.h"
#include "cli/StopSignals.h"
#include "cli/WaveOptions.h"
#include "controls/uWaveform.h"
#include "item/cHDItem.h"
#include "item/cHDItemMark.h"
#include "kits/common/Dates.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/draw/OffscreenSurface.h"

namespace qm::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::int32_t kBarHeight = 24, kLeastBarHeight = 6, kBarPart = 6;  // at most a sixth of the picture

// Markers of a marker file stay; those of the item's timing join them where there are none or fields were
// set.
void MarkTiming(cHDItem& item, const ItemArgument& argument) {
  const auto own = item.Markers();
  if (!own.empty() && argument.fields.empty()) return;
  item.CreateMarkersFromTiming();
  for (const auto& mark : own) item.AddMarker(mark);
}

std::shared_ptr<cHDItem> LoadItem(const ItemArgument& argument, std::string& errorText) {
  ItemFileContents contents;
  if (!LoadItemFileContents(argument.path, contents, errorText)) return nullptr;
  ApplyFields(argument, *contents.file.item);
  MarkTiming(*contents.file.item, argument);
  return contents.file.item;
}

// Where no peak file can stand beside the audio, a passing one serves.
enPeakFileErr LoadPeaks(const std::string& path, cPeakFile& peaks) {
  const enPeakFileErr error = peaks.ReadAudioPeakFile(path, true);
  if (error != pfeOpenDestFileFail) return error;
  const std::string passing = TemporaryFileName("ppk");
  const enPeakFileErr again = peaks.ScanAudioFile(path, passing, true);
  DeleteFile(passing);
  return again;
}

class WavePicture {
 public:
  WavePicture(const WaveOptions& options, std::shared_ptr<cPeakFile> peaks, std::shared_ptr<cHDItem> item)
      : m_options(options), m_rate(Greater(1, peaks->Header().AudioSampleRate)) {
    m_control.SetLineColour(options.lineColour);
    m_control.SetFillColour(options.fillColour);
    m_control.SetBackColor(options.backColour);
    m_control.SetAutoScale(options.autoScale);
    m_control.SetDrawType(options.drawType);
    m_control.SetShowPositionBar(!options.noBar && m_bar->Height() >= kLeastBarHeight);
    m_control.Resize(options.width, options.height);
    m_control.SetPeakFile(std::move(peaks), false);
    m_control.SetHDItem(std::move(item), false);
    Show();
    m_control.UpdateDisplay();
  }

  const uWaveform& Control() const { return m_control; }

  Picture Whole() const {
    OffscreenSurface whole(m_options.width, m_options.height, m_options.backColour);
    for (const auto& [surface, place] :
         {std::pair{m_view, m_control.ViewPlace()}, std::pair{m_bar, m_control.BarPlace()}})
      whole.DrawPicture(surface->Shown(), place.left, place.top);
    return whole.Pixels();
  }

 private:
  std::int32_t Samples(double seconds) const {
    return static_cast<std::int32_t>(Limit<std::int64_t>(RoundToWhole(seconds * m_rate), 0, INT32_MAX));
  }

  void Show() {
    const std::int32_t first = m_control.StartSample();
    const std::int32_t all = m_control.NumberSamples();
    std::int32_t start = std::min(Samples(m_options.start.value_or(0)), INT32_MAX - first) + first;
    std::int32_t number = std::min(m_options.end ? Samples(*m_options.end) : all, all) - (start - first);
    if (m_options.start || m_options.end) m_control.SetView(start, number, false);
    if (m_options.highlight) {
      const auto [from, to] = *m_options.highlight;
      m_control.SetHighlight(Samples(from), Samples(to - from), false);
    }
    if (m_options.zoom) (m_control.*m_options.zoom)(false);
    for (std::int32_t i = 0; i < m_options.zoomIns; ++i) m_control.ZoomIn(false);
    if (m_options.position) m_control.SetPlayPositionSample(Greater(1, Samples(*m_options.position)));
  }

  const WaveOptions& m_options;
  const double m_rate;
  std::shared_ptr<OffscreenSurface> m_view = std::make_shared<OffscreenSurface>();
  std::shared_ptr<OffscreenSurface> m_bar =
      std::make_shared<OffscreenSurface>(0, std::min(kBarHeight, m_options.height / kBarPart), 0);
  uWaveform m_control{m_view, m_bar};
};

void Tell(const WaveOptions& options, const uWaveform& control, const cHDItem& item) {
  const qmPeakFileHeader header = control.PeakFile()->Header();
  const double rate = Greater(1, header.AudioSampleRate);
  const double start = Greater(0, control.StartSample() - 1) / rate, length = control.NumberSamples() / rate;
  const auto text = [](double seconds) { return SecondsToText(seconds, ettDuration, true); };
  if (options.printing == epForPeople) {
    fmt::print("{}\n  {} x {}, {} to {} of {}\n", options.png, options.width, options.height, text(start),
               text(start + length), text(header.AudioNumberSamples / rate));
    return;
  }
  Json marks = Json::array();
  for (const auto& mark : item.Markers())
    marks.push_back({{"title", mark->Title()},
                     {"start", mark->StartSample() / rate},
                     {"seconds", mark->Duration() / rate}});
  const Json document{{"file", options.item.path},
                      {"png", options.png},
                      {"width", options.width},
                      {"height", options.height},
                      {"start", start},
                      {"seconds", length},
                      {"totalSeconds", header.AudioNumberSamples / rate},
                      {"markers", marks}};
  fmt::print("{}\n", document.dump(2, ' ', false, Json::error_handler_t::replace));
}

std::int32_t Fail(const std::string& text) {
  TellFailure(text);
  return exsFailed;
}

}  // namespace

std::int32_t Wave(const WaveOptions& options) {
  std::string errorText;
  const auto item = LoadItem(options.item, errorText);
  if (!item) return Fail(errorText);

  const StopSignals signals;
  LongWork work(signals, 1);
  work.Next(1, FileNameOf(options.item.path));
  const auto peaks = std::make_shared<cPeakFile>();
  WatchScans(*peaks, work);
  const enPeakFileErr error = LoadPeaks(options.item.path, *peaks);
  work.Clear();
  if (!work.GoesOn()) return exsSignal + work.EndedBy();
  if (error != pfeOK) return Fail(ScanFailure(options.item.path, "its peak file", error));

  const WavePicture picture(options, peaks, item);
  if (!WritePng(options.png, picture.Whole())) return Fail("cannot write '" + options.png + "'");
  Tell(options, picture.Control(), *item);
  return exsDone;
}

}  // namespace qm::cli
