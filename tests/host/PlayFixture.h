#pragma once
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>

#include "ProgramRun.h"

namespace qm::test {

using Samples = std::vector<std::int16_t>;

// Two stereo files of quiet noise, one second and half of one, for the program to play into a file.
class PlayFixture : public testing::Test {
 protected:
  PlayFixture() {
    WriteBytes(m_folder.File("first.wav"), Wav16(m_first, 44100, 2));
    WriteBytes(m_folder.File("second.wav"), Wav16(m_second, 44100, 2));
  }

  // What it tells on standard error, line by line.
  std::vector<std::string> Play(const std::string& words, int status = 0) {
    ProgramRun run(m_folder, Quillmere("play " + words + " --device wav:out.wav --events events"));
    EXPECT_EQ(run.Status(), status) << run.Err();
    m_events.clear();
    for (const std::string& line : Lines(ReadBytes(m_folder.File("events"))))
      m_events.push_back(nlohmann::json::parse(line));
    return Lines(run.Err());
  }

  // Frames at which an event of that name came.
  std::vector<std::int64_t> Frames(const std::string& name) const {
    std::vector<std::int64_t> frames;
    for (const auto& event : m_events)
      if (event["name"] == name) frames.push_back(event["frame"]);
    return frames;
  }

  Samples Sound() const { return SamplesOf(m_folder.File("out.wav")); }

  // Adds frames of a sound, from one of its own on, at a frame of the sum.
  static void Mix(Samples& sum, std::size_t at, const Samples& samples, std::size_t from = 0,
                  std::size_t to = SIZE_MAX / 2) {
    const std::size_t count = std::min(samples.size(), 2 * to) - 2 * from;
    sum.resize(std::max(sum.size(), 2 * at + count));
    for (std::size_t i = 0; i < count; ++i)
      sum[2 * at + i] = static_cast<std::int16_t>(sum[2 * at + i] + samples[2 * from + i]);
  }

  // Starts to play with the events in a pipe, which keeps the program from running ahead, and reads them as
  // far as that event.
  void PlayIntoPipe(const std::string& words, const std::string& event) {
    mkfifo(m_folder.File("pipe").c_str(), 0600);
    m_run = std::make_unique<ProgramRun>(m_folder,
                                         Quillmere("play " + words + " --device wav:out.wav --events pipe"));
    m_pipe = std::ifstream(m_folder.File("pipe"));
    for (std::string line; line.find('"' + event + '"') == line.npos && std::getline(m_pipe, line);) {
    }
  }
  // The last event.
  std::string ReadToTheEnd() {
    std::string line, last;
    while (std::getline(m_pipe, line)) last = line;
    return last;
  }

  TempFolder m_folder;
  const Samples m_first = Noise16(2 * 44100, 0.3), m_second = Noise16(2 * 22050, 0.3, 7);
  std::vector<nlohmann::json> m_events;
  std::unique_ptr<ProgramRun> m_run;
  std::ifstream m_pipe;
};

}  // namespace qm::test
