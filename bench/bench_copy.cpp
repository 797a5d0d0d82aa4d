// A copy with another sample rate and normalising, against sox doing the same job; and what resampling and
// rounding leave behind of a swept sine, through the whole copy.
#include <algorithm>
#include <cmath>
#include <complex>
#include <memory>
#include <numbers>
#include <numeric>
#include <vector>

#include "Bench.h"
#include "audio/cCopyAudioFileNCT.h"
#include "kits/sound/cAudioFile.h"

namespace qm::bench {
namespace {

constexpr int kRounds = 5;
constexpr double kSeconds = 600;
constexpr double kPi = std::numbers::pi;

struct Job {
  const char* name;
  const char* ours;    // options of `quillmere copy`
  const char* theirs;  // effects of sox
};

// Both resample with 20 bits of precision: what sox calls -h. Neither dithers.
constexpr Job kJobs[] = {
    {"44.1 to 48 kHz", "--rate 48000", "rate -h 48000"},
    {"44.1 to 48 kHz, normalised", "--rate 48000 --normalise 100", "rate -h 48000 norm"},
    {"normalised", "--normalise 100", "norm"},
    {"44.1 to 48 kHz, normalised, its -v", "--rate 48000 --normalise 100", "rate -v 48000 norm"},
};

double Timed(const std::string& command) {
  const double started = WallSeconds();
  return std::system(command.c_str()) == 0 ? WallSeconds() - started : -1;
}

// The shortest of some runs of each, taken in turn so that a busy moment of the machine meets both.
bool Measure(const Job& job, const Inputs& inputs, const std::string& source) {
  const std::string quiet = " >/dev/null </dev/null", out = inputs.File("out.wav");
  const std::string ours = std::string(QM_PROGRAM) + " copy " + source + " " + out + " " + job.ours + quiet;
  const std::string theirs = "sox -D -V1 " + source + " " + out + " " + job.theirs + quiet;
  double best = 1e9, bestTheirs = 1e9;
  for (int round = 0; round < kRounds; ++round) {
    const double took = Timed(ours), tookTheirs = Timed(theirs);
    if (took < 0 || tookTheirs < 0) return false;
    best = std::min(best, took);
    bestTheirs = std::min(bestTheirs, tookTheirs);
  }
  Row(std::string("Copy of ten minutes, ") + job.name, best * 1000, " ms");
  Row(std::string("Copy, ") + job.name + ", against sox", best / bestTheirs, " times", "at most 1");
  return true;
}

// A sweep from 20 Hz up to half the rate of its source; frequency and phase at a moment.
struct Sweep {
  double seconds, top;
  double Hertz(double t) const { return 20 + (top - 20) * t / seconds; }
  double Phase(double t) const { return 2 * kPi * (20 * t + (top - 20) * t * t / seconds / 2); }
  double At(double t) const { return 0.9 * std::sin(Phase(t)); }
};

void Transform(std::vector<std::complex<double>>& values) {
  const std::size_t size = values.size();
  if (size == 1) return;
  std::vector<std::complex<double>> even(size / 2), odd(size / 2);
  for (std::size_t i = 0; i < size / 2; ++i) even[i] = values[2 * i], odd[i] = values[2 * i + 1];
  Transform(even);
  Transform(odd);
  for (std::size_t i = 0; i < size / 2; ++i) {
    const auto turned =
        std::polar(1.0, -2 * kPi * static_cast<double>(i) / static_cast<double>(size)) * odd[i];
    values[i] = even[i] + turned;
    values[i + size / 2] = even[i] - turned;
  }
}

// The strongest line of a stretch, as the amplitude of a tone by full scale, in dB.
double WorstLine(const std::vector<double>& samples) {
  const std::size_t count = samples.size();
  std::vector<std::complex<double>> values(count);
  for (std::size_t i = 0; i < count; ++i)
    values[i] = samples[i] * (1 - std::cos(2 * kPi * static_cast<double>(i) / static_cast<double>(count)));
  Transform(values);
  double worst = 0;
  for (std::size_t i = 0; i < count / 2; ++i) worst = std::max(worst, std::abs(values[i]));
  return 20 * std::log10(worst * 2 / static_cast<double>(count) + 1e-15);
}

using Part = std::vector<double>;

double Product(const Part& first, const Part& second) {
  return std::inner_product(first.begin(), first.end(), second.begin(), 0.0);
}

void TakeAway(Part& from, const Part& unit) {
  const double share = Product(from, unit);
  for (std::size_t i = 0; i < from.size(); ++i) from[i] -= share * unit[i];
}

// Takes the sweep itself out of a stretch, in whatever loudness and phase a filter has left it: these may
// change as a cubic does. What remains is noise.
void TakeSweepAway(Part& part, const Sweep& sweep, double start, double rate) {
  std::vector<Part> units;
  for (int k = 0; k < 8; ++k) {
    Part unit(part.size());
    for (std::size_t i = 0; i < unit.size(); ++i) {
      const double along = 2 * static_cast<double>(i) / static_cast<double>(unit.size()) - 1;
      const double phase = sweep.Phase(start + static_cast<double>(i) / rate) + (k % 2 ? kPi / 2 : 0);
      unit[i] = std::pow(along, k / 2) * std::sin(phase);
    }
    for (const Part& other : units) TakeAway(unit, other);
    const double length = std::sqrt(Product(unit, unit));
    for (double& value : unit) value /= length;
    TakeAway(part, unit);
    units.push_back(std::move(unit));
  }
}

struct Case {
  const char* name;
  std::int32_t from, to, tag;
};

constexpr Case kCases[] = {
    {"44.1 to 48 kHz, float", 44100, 48000, wftFloat}, {"48 to 44.1 kHz, float", 48000, 44100, wftFloat},
    {"96 to 44.1 kHz, float", 96000, 44100, wftFloat}, {"44.1 to 48 kHz, 16-bit", 44100, 48000, wftPCM},
    {"96 to 44.1 kHz, 16-bit", 96000, 44100, wftPCM},
};

bool CopySweep(const Inputs& inputs, const Case& test, const Sweep& sweep, std::vector<float>& result) {
  std::vector<float> samples(static_cast<std::size_t>(sweep.seconds * test.from));
  for (std::size_t i = 0; i < samples.size(); ++i)
    samples[i] = static_cast<float>(sweep.At(static_cast<double>(i) / test.from));
  cAudioFile file;
  file.SetWAVSettings(test.from, 1, 32, wftFloat);
  const std::string source = inputs.File("sweep.wav"), out = inputs.File("swept.wav");
  if (file.CreateFile(source, ecmWAV) != afeNone) return false;
  file.WriteFrames(samples.data(), samples.size());
  if (file.Close() != afeNone) return false;
  const auto format = std::make_shared<cAudioFormat>();
  format->SetFormatType(aftWAV);
  format->SetSampleRate(test.to);
  format->SetChannels(1);
  format->SetWAVFormatTag(test.tag);
  cCopyAudioFileNCT copier;
  if (copier.CopyAudioFile(source, out, format) != cerOK || file.OpenForRead(out) != afeNone) return false;
  result.resize(static_cast<std::size_t>(file.NumberSamples()));
  return file.ReadFrames(result.data(), result.size()) == result.size();
}

// Below nine tenths of the narrower band only the sweep itself may come through; above the band nothing.
bool MeasureResidue(const Inputs& inputs, const Case& test) {
  const Sweep sweep{20, test.from / 2.0};
  std::vector<float> result;
  if (!CopySweep(inputs, test, sweep, result)) return false;
  constexpr std::size_t kPart = 8192;
  const double band = std::min(test.from, test.to) / 2.0;
  double noise = -300, alias = -300;
  for (std::size_t at = kPart; at + 2 * kPart < result.size(); at += kPart / 2) {
    const double start = static_cast<double>(at) / test.to, end = static_cast<double>(at + kPart) / test.to;
    const bool passes = sweep.Hertz(end)<0.9 * band, stops = sweep.Hertz(start)> band + 100;
    if (!passes && !stops) continue;
    Part part(result.begin() + static_cast<std::ptrdiff_t>(at),
              result.begin() + static_cast<std::ptrdiff_t>(at + kPart));
    if (passes) TakeSweepAway(part, sweep, start, test.to);
    double& worst = passes ? noise : alias;
    worst = std::max(worst, WorstLine(part));
  }
  const std::string what = std::string("Swept sine, ") + test.name;
  Row(what + ", worst line of noise", noise, " dB", "at most -100");
  if (test.to < test.from) Row(what + ", worst alias", alias, " dB", "at most -100");
  return true;
}

int Run() {
  const Inputs inputs;
  const std::string source = inputs.Make("a.wav", kSeconds, "-c:a pcm_s16le");
  if (source.empty()) return 1;
  for (const Job& job : kJobs)
    if (!Measure(job, inputs, source)) return 1;
  for (const Case& test : kCases)
    if (!MeasureResidue(inputs, test)) return 1;
  return 0;
}

}  // namespace
}  // namespace qm::bench

int main() {
  return qm::bench::Run();
}
