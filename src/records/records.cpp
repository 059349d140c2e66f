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

std::string recordTag(int kind, std::string_view id) {
  return std::to_string(kind) + " - " + std::string(id);
}

Form* FindRecordWindow(App& app, int kind, std::string_view id) {
  const std::string tag = recordTag(kind, id);
  for (int i = 0; i < app.windows.Count(); ++i) {
    if (app.windows[i].Tag == tag) return &app.windows[i];
  }
  return nullptr;
}

static void readType(App& app, int kind, std::string_view id) {
  const auto slot = static_cast<std::size_t>(kind);
  const TypeRequest request = typeRequestOf(kind);
  if (request.code.empty() || id.empty()) return;  // a new record has the type that was used last
  app.slots.typeNames[slot].clear();
  app.slots.typeIds[slot].clear();
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
  if (app.slots.opening.source == kSourceEquipment) return true;
  app.lookUp.LookupStatus.clear();
  app.global.ReadyAllForms();
  app.makers.run("NewMaintenanceSetup", app);
  app.global.BusyAllForms();
  return app.lookUp.LookupStatus.empty();
}

/// New records and copies can be open side by side: the number of loaded windows tells them apart. A word
/// marks them, so that none is taken for the window of the record with this id. A hidden window has no tag.
static std::string tagOf(const App& app, const RecordOpening& opening) {
  const std::string count = std::to_string(app.windows.Count());
  if (opening.hidden) return {};
  if (opening.isNew()) return recordTag(opening.kind, "new " + count);
  return recordTag(opening.kind, opening.copy ? "copy " + count : opening.id);
}

static void fillSlots(App& app, const RecordOpening& opening) {
  app.slots.opening = opening;
  readType(app, opening.kind, opening.id);
}

static Form* showRecord(App& app, const RecordOpening& opening) {
  const std::string tag = tagOf(app, opening);
  fillSlots(app, opening);
  if (opening.kind == kMaintenance && opening.isNew() && !askForPiece(app)) return nullptr;
  auto window = app.makers.makeRecord(opening.kind, app);
  if (!window) return nullptr;
  Form& form = app.windows.keep(std::move(window));
  form.Tag = tag;
  opening.hidden ? form.Load() : form.Show();
  // A record that could not be read closes its window.
  return form.isLoaded() ? &form : nullptr;
}

/// The other kind under which the same piece is opened; the kind itself where there is none.
static int twinOf(int kind) {
  if (kind == kEquipment) return kGroupMember;
  return kind == kGroupMember ? kEquipment : kind;
}

Form* OpenRecordWindow(App& app, const RecordOpening& opening) {
  if (!hasWindow(opening.kind)) return nullptr;
  const bool findsItsOwn = !opening.isNew() && !opening.copy && !opening.hidden;
  app.global.BusyAllForms();
  Form* form = findsItsOwn ? FindRecordWindow(app, opening.kind, opening.id) : nullptr;
  if (!form && findsItsOwn) form = FindRecordWindow(app, twinOf(opening.kind), opening.id);
  if (form) {
    form->WindowState = FormState::Normal;
    form->SetFocus();
  } else {
    form = showRecord(app, opening);
  }
  app.global.ReadyAllForms();
  return form;
}

void CloseRecordWindow(App& app, int kind, std::string_view id) {
  if (Form* form = FindRecordWindow(app, kind, id)) form->Unload();
}

int VerifyDelete(App& app, std::string_view id, std::string_view kind) {
  return Ask(app.global, "").codeOf("VERDELE", {{tags::VID, id}, {tags::VTY, kind}});
}

}  // namespace vantry
