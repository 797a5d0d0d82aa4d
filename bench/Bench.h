#pragma once
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

// What the benchmarks share: clocks, rows of the table, the inputs.
namespace qm::bench {

inline double Seconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}
inline double WallSeconds() { return Seconds(CLOCK_MONOTONIC); }
inline double ProcessSeconds() { return Seconds(CLOCK_PROCESS_CPUTIME_ID); }

// Wall seconds of the shortest of some runs of work that answers whether it went well: the rest of the machine
// only ever adds.
template <class Work>
double Shortest(Work work) {
  constexpr int kRounds = 5;
  double shortest = 1e9;
  for (int round = 0; round < kRounds; ++round) {
    const double started = WallSeconds();
    if (!work()) std::exit(1);
    shortest = std::min(shortest, WallSeconds() - started);
  }
  return shortest;
}

// One line of the README's table: what, how much of what, and the goal ("" where none is set).
inline void Row(const std::string& what, double value, const std::string& unit, const std::string& goal = "") {
  const bool whole = value >= 0 && value == static_cast<double>(static_cast<long long>(value));
  std::printf("| %s | %.*f%s | %s |\n", what.c_str(), whole ? 0 : value < 10 ? 2 : value < 100 ? 1 : 0, value,
              unit.c_str(), goal.c_str());
  std::fflush(stdout);
}

// A folder of inputs, made with the usual tools and gone with the object.
class Inputs {
 public:
  Inputs() {
    std::string name = (std::filesystem::temp_directory_path() / "qmbenchXXXXXX").string();
    if (mkdtemp(name.data())) m_folder = name;
  }
  ~Inputs() {
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
  }
  Inputs(const Inputs&) = delete;
  Inputs& operator=(const Inputs&) = delete;

  std::string File(const std::string& name) const { return m_folder + "/" + name; }

  // Noise under a chord, stereo, as a file whose type and coding the arguments choose; "" when ffmpeg fails.
  std::string Make(const std::string& name, double seconds, const std::string& arguments, int rate = 44100) const {
    const std::string path = File(name);
    const std::string source =
        "aevalsrc='0.2*sin(440*2*PI*t)+0.2*sin(554*2*PI*t)+0.1*random(0)|0.2*sin(330*2*PI*t)+0.1*random(1)':s=" +
        std::to_string(rate) + ":d=" + std::to_string(seconds);
    const std::string command =
        "ffmpeg -v error -nostdin -y -f lavfi -i \"" + source + "\" " + arguments + " '" + path + "'";
    return std::system(command.c_str()) == 0 ? path : "";
  }

 private:
  std::string m_folder;
};

}  // namespace qm::bench
