// Room for an object that is made later, or never.
//
// As std::optional, but the room is left alone until then: where a short call
// makes few of many large objects, clearing the others would cost more than all
// it does.
#pragma once

#include <cassert>
#include <memory>
#include <utility>

namespace quill {

template <class T>
class Slot {
 public:
  Slot() {}  // NOLINT(modernize-use-equals-default): must not clear the room
  ~Slot() {
    if (filled_) std::destroy_at(&room_.value);
  }
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;

  template <class... Arguments>
  void emplace(Arguments&&... arguments) {
    assert(!filled_);
    std::construct_at(&room_.value, std::forward<Arguments>(arguments)...);
    filled_ = true;
  }

  bool has_value() const { return filled_; }
  T& operator*() {
    assert(filled_);
    return room_.value;
  }
  const T& operator*() const {
    assert(filled_);
    return room_.value;
  }
  const T* operator->() const { return &**this; }

 private:
  union Room {
    Room() {}   // NOLINT(modernize-use-equals-default)
    ~Room() {}  // NOLINT(modernize-use-equals-default)
    T value;
  };

  Room room_;
  bool filled_ = false;
};

}  // namespace quill
