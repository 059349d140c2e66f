#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/form.h"

namespace vantry {

class Desktop;

/// The loaded windows in the order of their loading, and the windows that the program owns.
class Windows {
 public:
  explicit Windows(Desktop& desktop);
  ~Windows();

  Desktop& desktop() const { return desktop_; }
  /// The system's short date, asked for once.
  const std::string& shortDateFormat() const { return shortDateFormat_; }

  /// Counted from 0; may shrink while it is walked.
  int Count() const { return static_cast<int>(loaded_.size()); }
  Form& operator[](int index) const { return *loaded_.at(static_cast<std::size_t>(index)); }

  /// Owns a window from now on. It is freed some time after it has unloaded, never within its own events.
  template <class T>
  T& keep(std::unique_ptr<T> form) {
    T& window = *form;
    kept_.push_back(std::move(form));
    return window;
  }

  /// Frees all kept windows, at the program's end.
  void freeAll() { kept_.clear(); }
  /// Frees the kept windows that have unloaded. The front end calls it between events.
  void sweep();

 private:
  friend class Form;
  void add(Form& form) { loaded_.push_back(&form); }
  void remove(Form& form) { std::erase(loaded_, &form); }

  Desktop& desktop_;
  std::string shortDateFormat_;
  std::vector<Form*> loaded_;
  std::vector<std::unique_ptr<Form>> kept_;
};

}  // namespace vantry
