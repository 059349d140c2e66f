#include "platform/windows.h"

#include "platform/desktop.h"

namespace vantry {

Windows::Windows(Desktop& desktop) : desktop_(desktop), shortDateFormat_(desktop.shortDateFormat()) {}

Windows::~Windows() = default;

void Windows::sweep() {
  std::erase_if(kept_, [](const std::unique_ptr<Form>& form) { return !form->isLoaded(); });
}

}  // namespace vantry
