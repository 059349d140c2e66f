#include "records/search_window.h"

#include "frame/app.h"

namespace vantry {

std::string pickBySearch(App& app, std::string_view tag) {
  const auto window = app.makers.makeWindow(kSearchWindow, app);
  if (!window) return {};
  window->Tag = std::string(tag);
  window->ShowModal();
  const std::string answer = window->Tag.get();
  window->Unload();
  return answer == tag ? std::string() : answer;
}

}  // namespace vantry
