#include "services/Diagnostics.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "kits/common/Clock.h"
#include "kits/common/Dates.h"
#include "kits/common/Files.h"
#include "kits/common/MessageBox.h"
#include "kits/common/Numbers.h"
#include "kits/common/Process.h"
#include "kits/common/Registry.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

constexpr std::int32_t kProblemLevel = 5;
constexpr std::int32_t kMemoryMode = 10;  // the lowest mode with memory figures
constexpr std::size_t kIndent = 4;        // blanks for each level of nesting

struct Writer {
  DiagnosticsSettings settings;
  std::size_t depth = 0;
  std::string folder;         // "" until the first line
  std::string folderRefused;  // the one that the user was told of
};

Writer& TheWriter() {
  static Writer writer;
  return writer;
}

std::string Title(const Writer& writer) {
  return writer.settings.applicationTitle.empty() ? ProgramName() : writer.settings.applicationTitle;
}

void ShowProblem(Writer& writer, const std::string& message) {
  const auto box = writer.settings.messageBox ? writer.settings.messageBox : ConsoleMessageBox();
  box->Show(message, mbsExclamation, Title(writer));
}

std::string WithEndSeparator(std::string folder) {
  if (!folder.ends_with('/') && !folder.ends_with('\\')) folder += '/';
  return folder;
}

const std::string& Folder(Writer& writer) {
  if (!writer.folder.empty()) return writer.folder;
  std::string folder = writer.settings.folder;
  if (folder.empty()) {
    const auto registry = writer.settings.registry ? writer.settings.registry : UserRegistry();
    folder = registry->ReadText("SOFTWARE\\Quillmere", "DebugPath", "");
  }
  if (folder.empty()) {
    const std::string own = UserFolder(eufState);
    folder = JoinPath(own.empty() ? TemporaryFolder() : own, "DebugFiles");
  }
  return writer.folder = WithEndSeparator(std::move(folder));
}

bool MakeSureOf(const std::string& folder, Writer& writer) {
  if (MakeFolder(folder)) return true;
  if (std::exchange(writer.folderRefused, folder) != folder) {
    ShowProblem(writer, "The Debug Files folder could not be created in '" + folder + "'!");
  }
  return false;
}

// The title as part of a file's name.
std::string FileTitle(const Writer& writer) {
  std::string title = Title(writer);
  std::ranges::replace_if(
      title, [](char c) { return c == '/' || c == '\\'; }, '-');
  return title;
}

std::string MemoryText() {
  constexpr std::size_t kWidth = 10;
  const auto memory = CurrentProcessMemory();
  if (!memory) return {};
  std::string text;
  for (const double size : {memory->residentMiB, memory->virtualMiB}) {
    const std::string figure = FixedText(size, 2);
    text += ' ' + std::string(kWidth - std::min(kWidth, figure.size()), ' ') + figure;
  }
  return text;
}

void WriteLine(Writer& writer, std::string_view text, std::int32_t nesting) {
  if (nesting == ednCloses && writer.depth > 0) --writer.depth;
  if (nesting == ednReset) writer.depth = 0;
  const std::string folder = Folder(writer);
  if (!MakeSureOf(folder, writer)) return;

  const tyLogDateTime now = DateTimeNow(writer.settings.clock ? *writer.settings.clock : *SystemClock());
  std::string line = SecondsToText(std::floor(static_cast<double>(now.Time)), ettClock);
  if (DebugMode() >= kMemoryMode) line += MemoryText();
  line.append(kIndent * writer.depth, ' ').append(" ").append(text).append("\n");
  // A log that cannot be written must not disturb what it describes.
  AppendToFile(folder + FileTitle(writer) + "." + CompactDateText(now.Date) + ".log", line);
  if (nesting == ednOpens) ++writer.depth;
}

}  // namespace

namespace diagnostics_detail {

std::int32_t debugMode = 0;

void Write(std::string_view text, std::int32_t, std::int32_t nesting) try {
  WriteLine(TheWriter(), text, nesting);
} catch (...) {
}

void Append(std::string& line, std::int32_t part) {
  line += NumberText(part);
}
void Append(std::string& line, std::int64_t part) {
  line += NumberText(part);
}
void Append(std::string& line, double part) {
  line += NumberText(part);
}

}  // namespace diagnostics_detail

void SetDebugMode(std::int32_t mode) {
  diagnostics_detail::debugMode = mode;
}

void ReportProblem(std::string_view Action, std::string_view ErrorText, bool SilentMode) try {
  std::string message = "There was a problem ";
  message += Trim(Action);
  if (const std::string_view error = Trim(ErrorText); !error.empty()) {
    message.append(" and the error's description was reported as : \"").append(error).append("\"");
  }
  if (!SilentMode) ShowProblem(TheWriter(), message);
  WriteDebug(message, kProblemLevel);
} catch (...) {
}

void SetDiagnostics(DiagnosticsSettings settings) {
  TheWriter() = Writer();
  TheWriter().settings = std::move(settings);
}

}  // namespace qm
