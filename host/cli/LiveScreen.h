#pragma once
#include <string>

#include "cli/PlayObserver.h"

namespace qm::cli {

struct Key;

// What somebody at the terminal looks at and presses keys on.
class LiveScreen : public PlayObserver {
 public:
  // Draws unless it has only just done so.
  virtual void Refresh() = 0;
  // A failure.
  virtual void Tell(const std::string& text) = 0;
  virtual void Press(const Key& key) = 0;
  // Takes the picture away.
  virtual void Erase() = 0;
  // Forgets what stands on the terminal, which somebody else has used.
  virtual void Leave() = 0;
};

}  // namespace qm::cli
