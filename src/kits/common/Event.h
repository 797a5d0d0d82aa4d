#pragma once
#include <sigc++/connection.h>
#include <sigc++/signal.h>

#include <functional>
#include <utility>

namespace qm {

// One event of a class, as a public member of its `events`. Host thread only.
//
// Listeners are called in the order in which they connected. A listener may disconnect itself or any other
// (at once), connect new ones (heard from the next emission on), and raise the same event again (nested).
// An argument that a listener may write into is declared as a reference: Event<std::int32_t, float&>.
template <class... Args>
class Event {
 public:
  using Connection = sigc::connection;

  Connection connect(std::function<void(Args...)> listener) { return m_signal.connect(std::move(listener)); }

  // For the owner of the event.
  void operator()(Args... args) const { m_signal.emit(std::forward<Args>(args)...); }

  bool HasListeners() const { return !m_signal.empty(); }

 private:
  sigc::signal<void(Args...)> m_signal;
};

}  // namespace qm
