// Room for objects that are made later, or never.
//
// The room is left alone until then: where a short call makes few of many large
// objects, clearing the others would cost more than all it does.
#pragma once

#include <cassert>
#include <memory>
#include <utility>

namespace quill {

// For one object, as std::optional.
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

// For up to kMost objects, made one after the other.
template <class T, int kMost>
class Slots {
 public:
  Slots() {}  // NOLINT(modernize-use-equals-default): must not clear the room
  ~Slots() { std::destroy_n(room_.values, count_); }
  Slots(const Slots&) = delete;
  Slots& operator=(const Slots&) = delete;

  template <class... Arguments>
  void emplace_back(Arguments&&... arguments) {
    assert(count_ < kMost);
    std::construct_at(room_.values + count_,
                      std::forward<Arguments>(arguments)...);
    ++count_;
  }

  T& operator[](int index) {
    assert(index >= 0 && index < count_);
    return room_.values[index];
  }
  const T& operator[](int index) const {
    assert(index >= 0 && index < count_);
    return room_.values[index];
  }

 private:
  union Room {
    Room() {}   // NOLINT(modernize-use-equals-default)
    ~Room() {}  // NOLINT(modernize-use-equals-default)
    T values[kMost];
  };

  Room room_;
  int count_ = 0;
};

}  // namespace quill
