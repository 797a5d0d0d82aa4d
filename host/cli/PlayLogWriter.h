#pragma once
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "cli/PlayObserver.h"

namespace qm {
class cPlayLog;
}

namespace qm::cli {

class PlayPool;

// Writes the play log record of each item that was played as it closes: one line of text, at once, behind
// what the file holds. A list leaves a line for each of its entries and, behind them, one for itself.
class PlayLogWriter : public PlayObserver {
 public:
  PlayLogWriter(const PlayPool& pool, std::string path);

  // Creates the file. False, with one line in errorText, when it cannot be written.
  bool Open(std::string& errorText);
  void Hear(const HeardEvent& heard) override;
  // False, with one line in errorText, when not every record could be written.
  bool Finish(std::string& errorText) const;

 private:
  void Write(const std::shared_ptr<cPlayLog>& log);
  bool Append(const std::string& text);

  const PlayPool& m_pool;
  const std::string m_path;
  const std::string m_loginName;
  std::string m_errorText;
  std::set<std::int16_t> m_played;                           // players, since their item was opened
  std::map<std::int16_t, std::shared_ptr<cPlayLog>> m_list;  // of lists that are closing, by player
};

}  // namespace qm::cli
