#pragma once
#include <cstdint>
#include <memory>
#include <string>

namespace qm {

// What hardware or command goes with one timing mark of an item.
class cHDItemTimeExtra {
 public:
  std::int32_t HardwareLine() const { return m_hardwareLine; }  // output line to drive at the mark; 0 none
  void SetHardwareLine(std::int32_t line) { m_hardwareLine = line; }
  std::int32_t HardwareAction() const { return m_hardwareAction; }  // action on that line; 0 none
  void SetHardwareAction(std::int32_t action) { m_hardwareAction = action; }
  const std::string& CommandName() const { return m_commandName; }  // command to run at the mark
  void SetCommandName(std::string name) { m_commandName = std::move(name); }

  // All three fields equal; false for no object.
  bool IsSame(const std::shared_ptr<const cHDItemTimeExtra>& other) const;

  // Tag text. Reading replaces the whole object, and takes the command's name from the action's key, as every
  // text in use has been read: a command name does not come back.
  std::string Serialisation() const;
  void SetSerialisation(const std::string& text);

 private:
  std::int32_t m_hardwareLine = 0;
  std::int32_t m_hardwareAction = 0;
  std::string m_commandName;
};

}  // namespace qm
