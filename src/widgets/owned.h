// Qt objects that their parent, or the event loop, deletes.
#pragma once

#include <memory>
#include <utility>

namespace velto {

// Makes a T from the arguments. One of these, or the call that the result is passed to, must give
// it the parent that owns it.
template <class T, class... Args>
T* MakeOwned(Args&&... args) {
    return std::make_unique<T>(std::forward<Args>(args)...).release();
}

}  // namespace velto
