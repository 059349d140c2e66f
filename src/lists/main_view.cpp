#include "lists/main_view.h"

#include "lists/grids.h"
#include "platform/wiring.h"

namespace vantry {

MainView::MainView(const MainParts& parts) : parts_(parts), ask_(parts.app.global, parts.form.Name()) {
  disable(create, edit, remove, cancel, charge, discharge, sort, print);
}

void MainView::takePreferences(Applies what) {
  if (what != Applies::Searches || !list()) return;
  SetGridMerge(list()->grid(), app().preferences.MergeCells);
  SetGridAutoSize(app(), list()->grid());
}

}  // namespace vantry
