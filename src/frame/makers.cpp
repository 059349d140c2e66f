#include "frame/makers.h"

#include "platform/form.h"

namespace vantry {

std::unique_ptr<Form> Makers::makeRecord(int kind, App& app) const {
  const RecordMaker& maker = records_.at(static_cast<std::size_t>(kind));
  if (maker) return maker(app);
  if (notBuilt) notBuilt("record window " + std::to_string(kind));
  return nullptr;
}

std::unique_ptr<Form> Makers::makeWindow(std::string_view name, App& app) const {
  const auto found = windows_.find(name);
  if (found != windows_.end()) return found->second(app);
  if (notBuilt) notBuilt(name);
  return nullptr;
}

void Makers::run(std::string_view name, App& app) const {
  const auto found = commands_.find(name);
  if (found != commands_.end()) {
    found->second(app);
  } else if (notBuilt) {
    notBuilt(name);
  }
}

void Makers::search(App& app, SearchCategory category) const {
  if (search_) {
    search_(app, category);
  } else if (notBuilt) {
    notBuilt("frmFind");
  }
}

}  // namespace vantry
