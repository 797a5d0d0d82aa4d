#include <fmt/format.h>

#include <cstdio>
#include <nlohmann/json.hpp>

#include "audio/cPeakFile.h"
#include "cli/AudioFolders.h"
#include "cli/Failure.h"
#include "cli/LongWork.h"
#include "cli/PeakScan.h"
#include "cli/PeaksOptions.h"
#include "cli/StopSignals.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"

namespace qm::cli {

namespace {

using Json = nlohmann::ordered_json;

class PeaksRun {
 public:
  explicit PeaksRun(const PeaksOptions& options) : m_options(options) {}

  std::int32_t Run() {
    for (const std::string& path : m_options.paths) Find(path);
    const StopSignals signals;
    LongWork work(signals, m_files.size());
    m_work = &work;
    for (std::size_t i = 0; i < m_files.size() && work.GoesOn(); ++i) {
      work.Next(i + 1, FileNameOf(m_files[i]));
      work.Show(0);
      DoFile(m_files[i]);
    }
    work.Clear();
    if (work.EndedBy() != 0) return exsSignal + work.EndedBy();
    if (m_notValid > 0)
      Fail(fmt::format("{} of {} files have no valid peak file", m_notValid, m_files.size()));
    if (std::fflush(stdout) != 0) Fail("cannot write to standard output");
    return m_failed ? exsFailed : exsDone;
  }

 private:
  void Find(const std::string& path) {
    if (!FolderExists(path)) return m_files.push_back(path);
    ForEachAudioFile(
        path, [this](const std::string& file) { m_files.push_back(file); },
        [this](const std::string& text) { Fail(text); });
  }

  void Fail(const std::string& text) {
    if (m_work) m_work->Clear();
    TellFailure(text);
    m_failed = true;
  }

  void DoFile(const std::string& path) {
    cPeakFile peaks;
    std::string peakFile;
    const bool valid = peaks.CheckPeakFileValid(path, peakFile);
    if (m_options.task == eptCheck)
      return valid ? Tell(path, peakFile, "valid", peaks) : DoInvalid(path, peakFile, peaks);
    if (valid && m_options.task == eptMake) return Tell(path, peakFile, "valid", peaks);
    WatchScans(peaks, *m_work);
    const enPeakFileErr error = peaks.ScanAudioFile(path, peakFile, true);
    if (error == pfeOK) return Tell(path, peakFile, "made", peaks);
    if (error != pfeCancelled) Fail(ScanFailure(path, peakFile, error));
  }

  void DoInvalid(const std::string& path, const std::string& peakFile, cPeakFile& peaks) {
    if (FileLength(path) <= 0) return Fail(ScanFailure(path, peakFile, pfeInvalidAudioFile));
    ++m_notValid;
    Tell(path, peakFile, FileExists(peakFile) ? "outdated" : "missing", peaks);
  }

  void Tell(const std::string& path, const std::string& peakFile, const std::string& state,
            cPeakFile& peaks) {
    m_work->Clear();
    if (m_options.printing == epForPeople) return fmt::print("{:8}  {}\n", state, path);
    Json line{{"file", path}, {"peakFile", peakFile}, {"state", state}};
    if (state == "made" || (state == "valid" && peaks.ReadPeakFile(peakFile) == pfeOK)) {
      const qmPeakFileHeader header = peaks.Header();
      line["points"] = RoundToWhole(header.NumberPeakSamples);
      line["interval"] = header.SamplingInterval;
      line["sampleRate"] = header.AudioSampleRate;
      line["frames"] = RoundToWhole(header.AudioNumberSamples);
      line["maxLevels"] = {header.MaxLeftLevel, header.MaxRightLevel};
    }
    fmt::print("{}\n", line.dump(-1, ' ', false, Json::error_handler_t::replace));
  }

  const PeaksOptions& m_options;
  std::vector<std::string> m_files;
  LongWork* m_work = nullptr;
  std::size_t m_notValid = 0;
  bool m_failed = false;
};

}  // namespace

std::int32_t Peaks(const PeaksOptions& options) {
  return PeaksRun(options).Run();
}

}  // namespace qm::cli
