#include "lists/main_view.h"

#include "lists/grids.h"
#include "platform/wiring.h"

namespace vantry {

MainView::MainView(const MainParts& parts, Frame& frame)
    : parts_(parts), frame_(frame), ask_(parts.app.global, parts.form.Name()) {
  disable(create, edit, remove, cancel, charge, discharge, sort, print);
}

void MainView::takePreferences(Applies what) {
  if (what != Applies::Searches || !list()) return;
  SetGridMerge(list()->grid(), app().preferences.MergeCells);
  SetGridAutoSize(app(), list()->grid());
}

void MainView::allow(bool on, Command MainCommands::*shared) {
  if (isVisible()) (parts_.commands.*shared).Enabled = on;
}

void MainView::allowListing(bool on) {
  print.Enabled = on;
  allow(on, &MainCommands::printListing);
}

void MainView::allowDetail(bool on) {
  allow(on, &MainCommands::printDetail);
}

void MainView::allowAllDetails(bool on) {
  allow(on, &MainCommands::printDetailAll);
}

}  // namespace vantry
