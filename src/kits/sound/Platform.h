#pragma once
#include <memory>

namespace qm {

class Clock;
class MessageBox;
class Registry;
class SoundSystem;

// Everything that reaches the library from outside, handed to the objects that a host makes. Never null
// inside.
struct Platform {
  std::shared_ptr<Clock> clock;
  std::shared_ptr<Registry> registry;
  std::shared_ptr<MessageBox> messageBox;
  std::shared_ptr<SoundSystem> sound;
};

// The real thing: system clock, the user's registry, a message box on standard error, the machine's sound
// devices. Made at the first call and shared from then on; the sound devices are opened when a player starts
// the engine.
std::shared_ptr<const Platform> DefaultPlatform();

}  // namespace qm
