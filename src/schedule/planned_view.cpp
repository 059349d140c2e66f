#include "schedule/planned_view.h"

#include "frame/secured_commands.h"
#include "platform/wiring.h"

namespace vantry {

/// By the numbers of the inventory's lists.
static constexpr Command MainCommands::*kNewRecords[] = {&MainCommands::newEquipment, &MainCommands::newGroup,
                                                         &MainCommands::newRoom,
                                                         &MainCommands::newMaintenance};

PlannedView::PlannedView(const MainParts& mainParts, Frame&, const ViewRow& view)
    : MainView(mainParts), view_(view) {
  if (view.array != FrameArray::Main) return;
  on(create.Run, &(mainParts.commands.*kNewRecords[view.kind]), &Command::run);
  create.Enabled = true;
}

void PlannedView::secure(const Rights& rights) {
  if (const auto subject = subjectOf(view_)) vantry::secure(rights, {{create, rightsOf(*subject).add}});
}

}  // namespace vantry
