#include "records/records.h"

#include "messaging/ask.h"
#include "words/tags.h"

namespace vantry {

/// The request for the type of a record, before its window opens; empty codes have none.
struct TypeRequest {
  std::string_view code, id, typeName, typeId;
};

static TypeRequest typeRequestOf(int kind) {
  switch (kind) {
    case kEquipment:
    case kGroup:
    case kGroupMember:
      return {"GETEGTN", tags::EID, tags::ETY, tags::ETI};
    case kRoom:
      return {"GETRTN", tags::RID, tags::RTY, tags::RTI};
    default:
      return {};
  }
}

static std::string windowTag(int kind, std::string_view id) {
  return std::to_string(kind) + " - " + std::string(id);
}

static Form* windowOf(App& app, const std::string& tag) {
  for (int i = 0; i < app.windows.Count(); ++i) {
    if (app.windows[i].Tag == tag) return &app.windows[i];
  }
  return nullptr;
}

static void readType(App& app, int kind, std::string_view id) {
  const auto slot = static_cast<std::size_t>(kind);
  app.slots.typeNames[slot].clear();
  app.slots.typeIds[slot].clear();
  const TypeRequest request = typeRequestOf(kind);
  if (request.code.empty() || id.empty()) return;
  // After a failure the window opens with empty slots.
  if (!Ask(app.global, "")(request.code, {{request.id, id}})) return;
  app.slots.typeNames[slot] = app.message.Get(request.typeName);
  app.slots.typeIds[slot] = app.message.Get(request.typeId);
}

static bool hasWindow(int kind) {
  return (kind >= kEquipment && kind <= kGroupMember) || kind == kBooking || kind == kWizard;
}

/// A maintenance record belongs to a piece, which is asked for first; false when none was named. A window of
/// a piece opens the record with its own piece.
static bool askForPiece(App& app) {
  if (app.slots.source == kSourceEquipment) return true;
  app.lookUp.LookupStatus.clear();
  app.global.ReadyAllForms();
  app.makers.run("NewMaintenanceSetup", app);
  app.global.BusyAllForms();
  return app.lookUp.LookupStatus.empty();
}

static void showRecord(App& app, int kind, const std::string& tag) {
  auto window = app.makers.makeRecord(kind, app);
  if (!window) return;
  Form& shown = app.windows.keep(std::move(window));
  shown.Tag = tag;
  shown.Show();
}

void OpenRecordWindow(App& app, int kind, std::string_view id) {
  if (!hasWindow(kind)) return;
  app.global.BusyAllForms();
  app.slots.kind = kind;
  // A new record has no window yet, also when it follows one that was just saved.
  const bool isNew = id.empty();
  if (Form* standing = isNew ? nullptr : windowOf(app, windowTag(kind, id))) {
    standing->WindowState = FormState::Normal;
    standing->SetFocus();
    app.global.ReadyAllForms();
    return;
  }
  const auto slot = static_cast<std::size_t>(kind);
  app.slots.ids[slot] = id;
  app.slots.modes[slot] = isNew ? 1 : 0;
  // Several new records can stand side by side: the number of loaded windows tells them apart. It is marked,
  // so that no window of a new record is taken for that of the record with this id.
  const std::string tag =
      windowTag(kind, isNew ? "new " + std::to_string(app.windows.Count()) : std::string(id));
  readType(app, kind, id);
  if (kind != kMaintenance || !isNew || askForPiece(app)) showRecord(app, kind, tag);
  app.global.ReadyAllForms();
}

void CloseRecordWindow(App& app, int kind, std::string_view id) {
  if (Form* standing = windowOf(app, windowTag(kind, id))) standing->Unload();
}

int VerifyDelete(App& app, std::string_view id, std::string_view kind) {
  return Ask(app.global, "").codeOf("VERDELE", {{tags::VID, id}, {tags::VTY, kind}});
}

}  // namespace vantry
