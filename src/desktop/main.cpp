// The composition root: makes the outside world, the program and its windows, and runs it.
#include <QApplication>
#include <QTemporaryDir>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <stdexcept>

#include "desktop/chatter.h"
#include "desktop/demo_operator.h"
#include "desktop/installed_components.h"
#include "desktop/note_window.h"
#include "desktop/program_options.h"
#include "desktop/qt_desktop.h"
#include "desktop/style.h"
#include "frame/modMain.h"
#include "schedule/program.h"
#include "transport/embedded_server.h"
#include "transport/http_transport.h"
#include "transport/sealed_box.h"

namespace vantry {
namespace {

/// A screenshot is taken of a fresh library with fresh settings, whatever the user has.
void prepareScreenshot(ProgramOptions& options, const QTemporaryDir& folder) {
  options.user = folder.path().toStdString();
  options.data = options.user / "library.sqlite";
  FileSettings settings(options.user / "settings.ini");
  if (options.view >= 0)
    settings.SaveSetting(kSettingsApplication, kSettingsSection, "View", std::to_string(options.view));
}

/// The first start makes a library, which takes seconds.
std::unique_ptr<EmbeddedServer> startServer(const std::filesystem::path& data) {
  std::optional<NoteWindow> note;
  if (!std::filesystem::exists(data)) note.emplace(QObject::tr("Making the small library..."));
  return std::make_unique<EmbeddedServer>(EmbeddedServer::Options{data, {}, false});
}

/// A file that cannot be read would look like a server that is away.
void checkAuthority(const std::string& file) {
  if (file.empty() || std::ifstream(file).peek() != std::ifstream::traits_type::eof()) return;
  throw std::runtime_error("Cannot read " + file +
                           ", the certificate of the authority that vouches for the server.");
}

int runProgram(ProgramOptions options, QtDesktop& desktop) {
  const QTemporaryDir scratch;
  if (!options.screenshot.empty()) prepareScreenshot(options, scratch);
  checkAuthority(options.authority);
  std::unique_ptr<EmbeddedServer> embedded;
  if (options.server.empty()) {
    embedded = startServer(options.data);
    options.server = embedded->address();
  }
  HttpTransport transport({.address = options.server, .certificateFile = options.authority});
  SystemClock clock;
  FileSettings settings(options.user / "settings.ini");
  InstalledComponents components(desktop, options.program);
  SealedBox sealer(transport);
  Program program({desktop, transport, clock, settings, components, options.program, options.user},
                  options.rest);
  App& app = program.app;
  app.session.setSealer(sealer);
  desktop.endWithSession(program.main);
  if (options.screenshot.empty()) return desktop.run([&] { return Main(app); });
  bool written = false;
  DemoOperator demo(desktop, app, [&] { written = desktop.writePicture(program.main, options.screenshot); });
  const int code = desktop.run([&] { return demo.start(); });
  return written ? code : 1;
}

int start(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  ProgramOptions options = readOptions(arguments);
  if (options.usage) return std::fputs(usageText().c_str(), stdout) < 0;
  if (options.version) return std::puts("vantry " VANTRY_VERSION) < 0;
  if (!options.fault.empty()) {
    std::fprintf(stderr, "%s\n%s", options.fault.c_str(), usageText().c_str());
    return 2;
  }

  quietUnseenScreen();
  QApplication application(argc, argv);
  QApplication::setApplicationName("Vantry");
  QApplication::setDesktopFileName("vantry");
  style::apply(application);
  options.program = filesOfProgram(QApplication::applicationDirPath().toStdString());
  QtDesktop desktop(options.screenshot.empty() ? (options.user / "windows.ini").string() : std::string());
  try {
    return runProgram(std::move(options), desktop);
  } catch (const std::exception& error) {
    // What keeps the program from starting: an address that is none, a library file that cannot be used.
    desktop.messageBox({Box::Kind::Critical, error.what(), {}});
    return 1;
  }
}

}  // namespace
}  // namespace vantry

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);
  return vantry::start(argc, argv);
}
