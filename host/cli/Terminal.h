#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

namespace qm::cli {

enum enTerminalUse : std::int32_t {
  etuBlock,        // a redrawn block beneath what the terminal shows already
  etuWholeScreen,  // a screen of its own; what the terminal shows comes back afterwards
};

// The terminal as a place for keys and a picture, for as long as the object lives: keys come at once and
// unseen, the cursor is hidden. Put back by the destructor and when the program crashes. One at a time.
class Terminal {
 public:
  // Standard input and output are a terminal, and it is this program's turn to use it.
  static bool Usable();

  // By the rules of locales.
  static bool TakesUnicode();

  explicit Terminal(enTerminalUse use = etuBlock);
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // The bytes of the keys pressed since the last call.
  std::string ReadKeys() const;
  std::size_t Width() const;  // cells
  std::size_t Height() const;
  void Write(const std::string& text) const;

  // Hands the terminal back to the shell until the program is continued.
  void Suspend();

 private:
  void Enter();

  const enTerminalUse m_use;
};

}  // namespace qm::cli
