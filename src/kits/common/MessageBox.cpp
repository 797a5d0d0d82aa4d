#include "kits/common/MessageBox.h"

#include <cstdio>

namespace qm {
namespace {

class Console : public MessageBox {
 public:
  enMessageBoxAnswer Show(const std::string& text, std::int32_t style, const std::string& title) override {
    std::string line = title.empty() ? text : title + ": " + text;
    for (char& c : line) {
      if (c == '\n' || c == '\r') c = ' ';
    }
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
    return RefusingAnswer(style);
  }
};

}  // namespace

std::shared_ptr<MessageBox> ConsoleMessageBox() {
  static const auto console = std::make_shared<Console>();
  return console;
}

enMessageBoxAnswer RefusingAnswer(std::int32_t style) {
  constexpr std::int32_t kButtons = 0xF;
  switch (style & kButtons) {
    case mbsOkOnly:
      return mbaOk;
    case mbsYesNo:
      return mbaNo;
    default:
      return mbaCancel;
  }
}

}  // namespace qm
