#include "records/search_window.h"

#include "frame/app.h"
#include "platform/text.h"

namespace vantry {

static constexpr std::string_view kGeneric = "G|";

bool isGenericRoomTag(std::string_view tag) {
  return tag.starts_with(kGeneric);
}

std::string genericRoomTag(const GenericRoom& room) {
  std::string tag = "G";
  for (const int number : {room.roomType, room.location, room.capacity, room.capacityOp})
    tag += "|" + std::to_string(number);
  if (!room.text.empty()) tag += "|" + room.text;
  return tag;
}

GenericRoom genericRoomOf(std::string_view tag) {
  GenericRoom room;
  if (!isGenericRoomTag(tag)) return room;
  int position = 1 + static_cast<int>(kGeneric.size());
  for (int* number : {&room.roomType, &room.location, &room.capacity, &room.capacityOp})
    *number = intOf(ServerTools::NextToken(position, tag, "|"));
  if (position > 0) room.text = tag.substr(static_cast<std::size_t>(position - 1));
  return room;
}

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
