#include "cli/EventWriter.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>

#include "contract/PlayerVocabulary.h"
#include "kits/common/Numbers.h"

namespace qm::cli {

namespace {

using Json = nlohmann::json;

// Bytes of a path that are no UTF-8 have no place in JSON.
std::string QuotedText(const std::string& text) {
  return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

// Seconds stay recognisable as a fraction: "2.0".
std::string SecondsText(double seconds) {
  std::string text = NumberText(seconds);
  return text.find_first_of(".e") == text.npos ? text + ".0" : text;
}

}  // namespace

std::string EventLine(const HeardEvent& heard) {
  return fmt::format(
      R"({{"frame":{},"seconds":{},"player":{},"event":{},"name":"{}","hdref":{},"s1":{},"s2":{},"str1":{},"str2":{}}})",
      heard.frame, SecondsText(heard.Seconds()), heard.player, heard.event, PlayerEventName(heard.event),
      QuotedText(heard.hdReference), NumberText(heard.sValue1), NumberText(heard.sValue2),
      QuotedText(heard.strValue1), QuotedText(heard.strValue2));
}

std::unique_ptr<EventWriter> EventWriter::Open(const std::string& path, std::string& errorText) {
  File file(std::fopen(path.c_str(), "we"));
  if (!file) {
    errorText = "cannot write '" + path + "': " + std::strerror(errno);
    return nullptr;
  }
  return std::unique_ptr<EventWriter>(new EventWriter(std::move(file), path));
}

std::unique_ptr<EventWriter> EventWriter::ToStandardOutput() {
  return std::unique_ptr<EventWriter>(new EventWriter(File(stdout), "standard output"));
}

void EventWriter::Hear(const HeardEvent& heard) {
  const std::string line = EventLine(heard) + '\n';
  std::fwrite(line.data(), 1, line.size(), m_file.get());
  // Somebody may be following; one line is at most a few dozen times a second of played time.
  std::fflush(m_file.get());
}

bool EventWriter::Finish(std::string& errorText) {
  if (std::fflush(m_file.get()) == 0 && !std::ferror(m_file.get())) return true;
  errorText = "cannot write '" + m_name + "' completely";
  return false;
}

}  // namespace qm::cli
