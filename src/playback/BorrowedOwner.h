#pragma once
#include <memory>

#include "contract/IPlayerCallback.h"

namespace qm {

// The owner for players that it holds itself: they must not keep it alive in turn. It has to terminate them
// before it goes.
inline std::shared_ptr<IPlayerCallback> BorrowedOwner(IPlayerCallback& owner) {
  return {std::shared_ptr<void>(), &owner};
}

}  // namespace qm
