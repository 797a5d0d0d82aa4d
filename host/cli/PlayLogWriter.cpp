#include "cli/PlayLogWriter.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "cli/PlayPool.h"
#include "kits/common/Files.h"
#include "playback/cListPlayer.h"
#include "playback/cPlayLog.h"
#include "playback/cPlayer.h"

namespace qm::cli {

namespace {
std::string LoginName() {
  const passwd* const user = getpwuid(geteuid());
  return user ? user->pw_name : "";
}
}  // namespace

PlayLogWriter::PlayLogWriter(const PlayPool& pool, std::string path)
    : m_pool(pool), m_path(std::move(path)), m_loginName(LoginName()) {}

bool PlayLogWriter::Open(std::string& errorText) {
  if (Append("")) return true;
  errorText = m_errorText;
  return false;
}

bool PlayLogWriter::Append(const std::string& text) {
  errno = 0;
  if (AppendToFile(m_path, text)) return true;
  m_errorText = "cannot write '" + m_path + "'";
  if (errno != 0) m_errorText += std::string(": ") + std::strerror(errno);
  return false;
}

void PlayLogWriter::Write(const std::shared_ptr<cPlayLog>& log) {
  if (!log) return;
  log->SetLoginName(m_loginName);
  Append(log->Serialisation() + '\n');
}

void PlayLogWriter::Hear(const HeardEvent& heard) {
  cPlayer& player = m_pool.Player(heard.player);
  switch (heard.event) {
    case pePlaying:
      m_played.insert(heard.player);
      break;
    case pePlayerListItemFinished:
      Write(player.BaseListPlayer()->PreviousListItemPlayLog());
      break;
    case peClosing:
      // What was only cued was not played. The entries of a list that is stopped close after it.
      if (m_played.erase(heard.player) == 0) break;
      if (player.ListMode())
        m_list[heard.player] = player.PreviousItemPlayLog();
      else
        Write(player.PreviousItemPlayLog());
      break;
    case peClosed:
      if (const auto list = m_list.extract(heard.player)) Write(list.mapped());
      break;
  }
}

bool PlayLogWriter::Finish(std::string& errorText) const {
  if (m_errorText.empty()) return true;
  errorText = m_errorText;
  return false;
}

}  // namespace qm::cli
