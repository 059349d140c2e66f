#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace vantry {

/// What of an element has changed; a shower repaints no more than that.
enum class Aspect {
  Text,
  Caption,
  Enabled,
  Visible,
  Colour,
  Value,
  List,
  Selection,
  Cells,
  Top,
  Columns,
  Picture,
  ToolTip,
  State,
  Structure
};

/// An event of an element. An empty one is raised without effect.
using Event = std::function<void()>;

inline void raise(const Event& event) {
  if (event) event();
}

/// Anything that can be shown: a form, a control, a menu entry. It holds the state. Whoever shows it is told
/// of each change through `Shower` and reads the state back.
class Element {
 public:
  Element() = default;
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;
  virtual ~Element() = default;

  /// Set by the front end while the element is shown; empty otherwise.
  std::function<void(Aspect)> Shower;

  void tell(Aspect aspect) const {
    if (Shower) Shower(aspect);
  }
};

/// A value of an element that reads and writes like a plain one. A new value is told to the shower, then
/// raises the element's event, whether code or the operator set it; an equal value does neither.
template <class T>
class Property {
 public:
  Property(Element& owner, Aspect aspect, T initial = T{})
      : owner_(owner), aspect_(aspect), value_(std::move(initial)) {}
  Property(const Property&) = delete;

  Property& operator=(const Property& other) { return *this = other.value_; }
  Property& operator=(T value) {
    if (value == value_) return *this;
    value_ = std::move(value);
    owner_.tell(aspect_);
    raise(Changed);
    return *this;
  }

  operator const T&() const { return value_; }
  const T& get() const { return value_; }

  /// Sets the value silently: neither the shower nor the event is called. For the element itself.
  void put(T value) { value_ = std::move(value); }

  /// The element's own reaction to a new value.
  Event Changed;

 private:
  Element& owner_;
  Aspect aspect_;
  T value_;
};

template <class T, class U>
bool operator==(const Property<T>& property, const U& value) {
  return property.get() == value;
}

/// A colour as the preferences keep it: blue, green and red from the high byte to the low one; with the top
/// bit set, the number of a colour of the desktop's palette.
using Colour = std::uint32_t;

/// No colour was given: the control has its own.
inline constexpr Colour kOwnColour = 0xFFFFFFFF;
inline constexpr Colour kSystemColour = 0x80000000;

}  // namespace vantry
