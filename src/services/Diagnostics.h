#pragma once
#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// The one diagnostic writer of the library: trace lines in a dated file, and telling the user of a failure.
// Process-wide, host thread only. No failure of it reaches its caller.
namespace qm {

class Clock;
class MessageBox;
class Registry;

// How a line changes the nesting depth, which indents the lines behind it.
enum enDebugNesting : std::int32_t { ednPlain = 0, ednOpens = 1, ednCloses = 2, ednReset = 3 };

namespace diagnostics_detail {
extern std::int32_t debugMode;
void Write(std::string_view text, std::int32_t level, std::int32_t nesting);
inline void Append(std::string& line, std::string_view part) {
  line += part;
}
void Append(std::string& line, std::int32_t part);
void Append(std::string& line, std::int64_t part);
void Append(std::string& line, double part);
template <std::integral Whole>
void Append(std::string& line, Whole part) {
  Append(line, static_cast<std::int64_t>(part));
}
}  // namespace diagnostics_detail

// 0 off, -1 everything, any other value the highest level that is written.
inline std::int32_t DebugMode() {
  return diagnostics_detail::debugMode;
}
void SetDebugMode(std::int32_t mode);

inline bool DebugWanted(std::int32_t level) {
  const std::int32_t mode = diagnostics_detail::debugMode;
  return mode != 0 && (mode == -1 || (level == -1 ? 5 : level) <= mode);
}

// Writes one line; a level of -1 means 5. Costs one comparison when diagnostics are off.
inline void WriteDebug(std::string_view text, std::int32_t level = -1, std::int32_t nesting = ednPlain) {
  if (DebugWanted(level)) diagnostics_detail::Write(text, level, nesting);
}

// The same for a line put together from parts (text and numbers), which are joined only when it is written.
template <class... Parts>
void Trace(std::int32_t level, std::int32_t nesting, const Parts&... parts) {
  if (!DebugWanted(level)) return;
  std::string line;
  (diagnostics_detail::Append(line, parts), ...);
  diagnostics_detail::Write(line, level, nesting);
}

// Shows "There was a problem <Action>[ and the error's description was reported as : "<ErrorText>"]" as an
// exclamation box, unless silent, and writes it at level 5.
void ReportProblem(std::string_view Action, std::string_view ErrorText, bool SilentMode);

// What the writer stands on. Members left empty keep their real default.
struct DiagnosticsSettings {
  std::shared_ptr<Clock> clock;
  std::shared_ptr<Registry> registry;
  std::shared_ptr<MessageBox> messageBox;
  std::string folder;            // of the debug files; empty: from the registry, else the system's default
  std::string applicationTitle;  // first part of the file's name; empty: the program's name
};

// Starts the writer afresh: depth 0, folder not looked up yet. The debug mode stays.
void SetDiagnostics(DiagnosticsSettings settings);

}  // namespace qm
