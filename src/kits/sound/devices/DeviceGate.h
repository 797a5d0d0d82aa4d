#pragma once
#include <atomic>
#include <thread>

namespace qm {

// Stands between a device's callback and its partner, so that the partner can be taken away at any moment
// although nobody knows when the device will call again.
template <class Partner>
class DeviceGate {
 public:
  // Control thread.
  void Open(Partner& partner) { m_partner.store(&partner); }

  // Control thread. Waits for a call that is under way, which is as long as copying one period.
  void Shut() {
    m_partner.store(nullptr);
    while (m_inside.load()) std::this_thread::yield();
  }

 protected:
  // Audio thread. Calls act(partner); false when the gate is shut.
  template <class Act>
  bool Through(Act act) noexcept {
    m_inside.store(true);
    Partner* partner = m_partner.load();
    if (partner) act(*partner);
    m_inside.store(false);
    return partner != nullptr;
  }

 private:
  std::atomic<Partner*> m_partner{nullptr};
  std::atomic<bool> m_inside{false};
};

}  // namespace qm
