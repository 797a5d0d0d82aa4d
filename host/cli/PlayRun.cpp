#include "cli/PlayRun.h"

namespace qm::cli {

Run::Run(PlayPool& pool) : m_pool(pool) {
  m_pool.act = [this](const HeardEvent& heard) { Act(heard); };
}

Run::~Run() {
  m_pool.act = nullptr;
}

void Run::TellOf(const std::string& text) {
  m_failed = true;
  m_pool.tell(text);
}

}  // namespace qm::cli
