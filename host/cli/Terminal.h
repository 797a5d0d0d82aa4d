#pragma once
#include <cstddef>
#include <string>

namespace qm::cli {

// The terminal as a place for keys and a redrawn block, for as long as the object lives: keys come at once
// and unseen, the cursor is hidden. Put back by the destructor and when the program crashes. One at a time.
class Terminal {
 public:
  // Standard input and output are a terminal, and it is this program's turn to use it.
  static bool Usable();

  Terminal();
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // The bytes of the keys pressed since the last call.
  std::string ReadKeys() const;
  std::size_t Width() const;  // cells
  void Write(const std::string& text) const;

  // Hands the terminal back to the shell until the program is continued.
  void Suspend();

 private:
  void Enter();
};

}  // namespace qm::cli
