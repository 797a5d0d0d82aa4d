#pragma once
#include <cstdint>
#include <memory>
#include <string>

namespace qm {

// What a message box shows beside its text and which buttons it has: sums of one icon and one button set.
enum enMessageBoxStyle : std::int32_t {
  mbsOkOnly = 0,
  mbsOkCancel = 1,
  mbsYesNoCancel = 3,
  mbsYesNo = 4,
  mbsCritical = 16,
  mbsQuestion = 32,
  mbsExclamation = 48,
  mbsInformation = 64,
};

enum enMessageBoxAnswer : std::int32_t { mbaOk = 1, mbaCancel = 2, mbaYes = 6, mbaNo = 7 };

// How the library asks or tells its user something. A desktop host puts up a dialog; a program without a
// screen uses ConsoleMessageBox.
class MessageBox {
 public:
  virtual ~MessageBox() = default;
  // Blocks until answered. Host thread.
  virtual enMessageBoxAnswer Show(const std::string& text, std::int32_t style, const std::string& title) = 0;
};

// Writes the text as one line to standard error and answers with the refusing button: Cancel or No where there
// is one, else OK.
std::shared_ptr<MessageBox> ConsoleMessageBox();

// The refusing button of a style.
enMessageBoxAnswer RefusingAnswer(std::int32_t style);

}  // namespace qm
