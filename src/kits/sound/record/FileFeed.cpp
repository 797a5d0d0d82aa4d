#include <algorithm>
#include <utility>
#include <vector>

#include "kits/sound/cAudioFile.h"
#include "kits/sound/record/RecordingChain.h"
#include "kits/sound/record/RecordingControl.h"
#include "kits/sound/record/RecordingFeed.h"
#include "kits/sound/record/RecordingNotes.h"

namespace qm {

namespace {

constexpr std::int32_t kPumpsPerSecond = 25;  // of sound: a note is heard before the sound goes on

class FileFeed : public RecordingFeed {
 public:
  explicit FileFeed(std::string path) : m_path(std::move(path)) {}

  bool Open(std::int32_t, std::string& errorText) override {
    m_file.AllowCompressedOpen(true);
    if (m_file.OpenForRead(m_path) == afeNone) return true;
    errorText = m_file.ErrorText();
    return false;
  }

  OutputFormat Format() const override { return {m_file.SampleRate(), m_file.Channels()}; }

  bool Start(RecordingChain& chain, RecordingNotes& notes, std::string&) override {
    m_chain = &chain;
    m_notes = &notes;
    m_block.resize(static_cast<std::size_t>(std::max(1, m_file.SampleRate() / kPumpsPerSecond)) *
                   static_cast<std::size_t>(m_file.Channels()));
    return true;
  }

  void Stop() override { m_chain = nullptr; }

  bool Pump() override {
    if (!m_chain || m_chain->Ended()) return false;
    const std::size_t wanted = m_block.size() / static_cast<std::size_t>(m_file.Channels());
    const std::size_t got = m_file.ReadFrames(m_block.data(), wanted);
    if (got == 0) return End();
    m_captured += got;
    const auto left = static_cast<double>(m_file.NumberSamples() - static_cast<std::int64_t>(m_captured));
    m_chain->Take(m_block.data(), got, left > 0 ? left / m_file.SampleRate() : 0);
    return true;
  }

  std::uint64_t Captured() const override { return m_captured; }
  std::uint64_t Lost() const override { return 0; }
  double Seconds() const override { return m_file.LengthMilliseconds() / 1000; }

 private:
  bool End() {
    RecordingChain* const ended = std::exchange(m_chain, nullptr);
    ended->Finish();
    if (m_file.LastError() != afeNone)
      m_notes->Add({.kind = ernError, .number = ereBadInput, .text = m_file.ErrorText()});
    ended->TellEnd();
    return true;
  }

  const std::string m_path;
  cAudioFile m_file;
  RecordingChain* m_chain = nullptr;
  RecordingNotes* m_notes = nullptr;
  std::vector<float> m_block;
  std::uint64_t m_captured = 0;
};

}  // namespace

std::unique_ptr<RecordingFeed> MakeFileFeed(std::string path) {
  return std::make_unique<FileFeed>(std::move(path));
}

}  // namespace qm
