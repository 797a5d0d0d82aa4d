#pragma once
#include <cstdio>
#include <memory>
#include <string>

#include "cli/PlayObserver.h"

namespace qm::cli {

// The event as one JSON document on one line, without the line's end.
std::string EventLine(const HeardEvent& heard);

// Writes events to a file as they come.
class EventWriter : public PlayObserver {
 public:
  // Null, with one line in errorText, when the file cannot be written.
  static std::unique_ptr<EventWriter> Open(const std::string& path, std::string& errorText);
  static std::unique_ptr<EventWriter> ToStandardOutput();

  void Hear(const HeardEvent& heard) override;
  // False, with one line in errorText, when not everything could be written.
  bool Finish(std::string& errorText);

 private:
  struct Closer {
    void operator()(std::FILE* file) const {
      if (file != stdout) std::fclose(file);
    }
  };
  using File = std::unique_ptr<std::FILE, Closer>;

  EventWriter(File file, std::string name) : m_file(std::move(file)), m_name(std::move(name)) {}

  File m_file;
  const std::string m_name;
};

}  // namespace qm::cli
