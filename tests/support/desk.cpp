#include "support/desk.h"

#include <unistd.h>

#include <algorithm>

#include "frame/app.h"
#include "frame/modMain.h"
#include "messaging/frmLogon.h"
#include "platform/text.h"
#include "words/requests.h"

namespace vantry::test {

static std::string settingName(std::string_view application, std::string_view section, std::string_view key) {
  return std::string(application) + '/' + std::string(section) + '/' + lower(key);
}

std::string MemorySettings::GetSetting(std::string_view application, std::string_view section,
                                       std::string_view key, std::string_view fallback) const {
  const auto found = texts.find(settingName(application, section, key));
  return found == texts.end() ? std::string(fallback) : found->second;
}

void MemorySettings::SaveSettings(std::string_view application, std::string_view section,
                                  const std::vector<Setting>& settings) {
  if (!refusal.empty()) throw std::runtime_error(refusal);
  ++writes;
  for (const Setting& setting : settings)
    texts[settingName(application, section, setting.key)] = setting.text;
}

void MemorySettings::prefer(std::string_view key, std::string_view text) {
  SaveSetting(kSettingsApplication, kSettingsSection, key, text);
}

static std::string rightsBlock(std::string_view codes, std::string_view named, std::string_view others) {
  const auto list = wordsOf(codes);
  std::string block;
  for (const std::string_view code : kRightCodes) {
    if (block.find(std::string(code) + '=') != std::string::npos) continue;  // one code stands twice
    const bool isNamed = std::find(list.begin(), list.end(), code) != list.end();
    block += std::string(code) + '=' + std::string(isNamed ? named : others) + ' ';
  }
  return block;
}

std::string allRightsBut(std::string_view codes) {
  return rightsBlock(codes, "N", "Y");
}
std::string onlyRights(std::string_view codes) {
  return rightsBlock(codes, "Y", "N");
}

Desk::Desk() {
  std::string pattern = (std::filesystem::temp_directory_path() / "vantry-desk-XXXXXX").string();
  folder = ::mkdtemp(pattern.data());
  settings.prefer("View", "0");  // the day view is this desk's first view
}

Desk::~Desk() {
  program_.reset();
  std::filesystem::remove_all(folder);
}

int Desk::windowsShown() const {
  int count = 0;
  for (int i = 0; i < app->windows.Count(); ++i) count += app->windows[i].isShown() ? 1 : 0;
  return count;
}

void Desk::build(std::string commandLine) {
  program_.reset();
  program_ = std::make_unique<Program>(
      App::Outside{desktop, server, clock, settings, components, folder, folder}, std::move(commandLine));
  app = &program_->app;
  app->makers.notBuilt = [this](std::string_view what) { notBuilt.emplace_back(what); };
}

void Desk::noteRecords() {
  for (int kind = 0; kind < kRecordKinds; ++kind) {
    app->makers.addRecord(kind, [this, kind](App&) {
      notBuilt.push_back("record window " + std::to_string(kind));
      return nullptr;
    });
  }
}

void Desk::expectLogOn(std::string_view operatorId) {
  server.expectLogon(operatorId, "secret");
  desktop.expectModalWindow<frmLogon>("frmLogon", [id = std::string(operatorId)](frmLogon& window) {
    window.txtOperator.type(id);
    window.txtPassword.type("secret");
    window.cmdOK.press();
  });
}

void Desk::expectContext(const std::string& rights, std::string_view operatorId) {
  expectLogOn(operatorId);
  server.expect("RLL", "OI=" + std::string(operatorId))
      .replies("LNA=\"Main Desk\" LOC=3 OLN=\"City Library\"");
  server.expect("SLL", "LOC=3").replies(rights);
  expectLists();
}

void Desk::expectLists() {
  server.expect("GETLOCS").replies("LNA=\"Main Desk\" LOC=3\nLNA=\"Branch\" LOC=4");
  for (const char* code : {"GETOPS", "GETECAT", "GETGCAT", "GETRCAT", "GETMYER"}) server.expect(code);
}

void Desk::expectFailure(std::string_view code, std::string_view tags) {
  server.expect(code, tags).fails(108);
  desktop.expectWarning("Barcode is not active!");
}

void Desk::start(const std::string& rights) {
  startWithBookings("", rights);
}

void Desk::startWithBookings(std::string_view bookings, const std::string& rights) {
  build();
  expectContext(rights);
  server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N").replies(bookings);
  ASSERT_TRUE(Main(*app));
  server.checkAllCame();
  desktop.checkAllCame();
  notBuilt.clear();
}

}  // namespace vantry::test
