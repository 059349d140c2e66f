#include <ctime>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>

#include <CLI/CLI.hpp>

#include "server/base/user_error.h"
#include "server/directory/directory.h"
#include "server/http/certificate.h"
#include "server/mail/letter.h"
#include "server/mail/mail_carrier.h"
#include "server/program/command_line.h"
#include "server/program/on_library.h"
#include "server/setup/administration.h"
#include "server/setup/demo/demo.h"
#include "server/setup/doctor.h"
#include "server/store/dialect.h"
#include "server/store/library_clock.h"

namespace vantry::server {

namespace {

std::int64_t freeBeside(const std::string& url) {
  if (dialectOf(url).kind != Dialect::Kind::Sqlite) return -1;
  std::error_code unknown;
  const auto space = std::filesystem::space(std::filesystem::absolute(url).parent_path(), unknown);
  return unknown ? -1 : static_cast<std::int64_t>(space.available);
}

/// Tells of files that cannot be used; the end of a certificate that can be is part of the state.
void lookAtCertificate(const CertificateFiles& files, MachineState& state, std::vector<std::string>& found) {
  if (files.certificate.empty() && files.key.empty()) return;
  try {
    checkCertificate(files);
    state.certificate = files.certificate;
    state.certificateEnd = endOfCertificate(files.certificate);
  } catch (const UserError& error) {
    found.emplace_back(error.what());
  }
}

/// Tells of mail that could not be sent.
void lookAtMail(const MailSettings& mail, std::vector<std::string>& found) {
  if (!mail.kinds.any()) return;
  try {
    static_cast<void>(senderIn(mail.from));
    static_cast<void>(makeCarrier(mail));
  } catch (const UserError& error) {
    found.emplace_back(error.what());
  }
}

/// Tells of a directory that cannot be asked, or that there is not.
void lookAtDirectory(const DirectorySettings& directory, bool isNeeded, std::vector<std::string>& found) {
  if (directory.address.empty()) {
    if (isNeeded) found.emplace_back("Operators log on by the directory, and none is set: see --directory.");
    return;
  }
  try {
    std::ranges::move(Directory(directory).faults(), std::back_inserter(found));
  } catch (const UserError& error) {
    found.emplace_back(error.what());
  }
}

bool isAnyByDirectory(Connection& db) {
  return std::ranges::any_of(operators(db),
                             [](const OperatorRow& row) { return row.active && row.byDirectory; });
}

/// Prints what is wrong with the library's set-up and its machine, or will be soon; true when nothing is.
bool runDoctor(const Site& site, const CertificateFiles& files) {
  const std::string& url = site.database;
  std::vector<std::string> found;
  MachineState state{.now = std::time(nullptr)};
  LibrarySizes sizes;
  bool needsDirectory = false;
  std::vector<std::string> ofLibrary;
  lookAtCertificate(files, state, found);
  lookAtMail(site.mail, found);
  onLibrary(url, [&](Database& database) {
    state.clockSkew = clockSkew(database, state.now);
    database.read([&](Connection& db) {
      sizes = librarySizes(db);
      ofLibrary = examineLibrary(db, wallClock());
      needsDirectory = isAnyByDirectory(db);
    });
  });
  lookAtDirectory(site.directory, needsDirectory, found);
  state.freeBytes = freeBeside(url);
  state.databaseBytes = sizes.bytes;
  found.insert(found.end(), ofLibrary.begin(), ofLibrary.end());
  for (std::string& each : examineMachine(state)) found.push_back(std::move(each));
  if (hasDemoPasswords(url))
    found.emplace_back(
        "An operator of the demo library has a password that everybody knows: change it with "
        "\"operator password\", or use \"operator disable\".");
  for (const std::string& sentence : found) std::cout << sentence << '\n';
  if (found.empty()) std::cout << "Nothing is wrong.\n";
  std::cout << sizesText(sizes) << '\n';
  return found.empty();
}

/// What `serve` would take: its options have been read from the configuration file.
std::string valueOfServe(const CLI::App& program, const char* option) {
  const auto& values = program.get_subcommand("serve")->get_option(option)->results();
  return values.empty() ? std::string() : values.front();
}

}  // namespace

void describeDoctor(CLI::App& app, const Site& site) {
  CLI::App* doctor =
      app.add_subcommand("doctor", "Tell what is wrong with the library and its server, or will be soon");
  doctor->callback([&app, &site] {
    const CertificateFiles files{.certificate = valueOfServe(app, "--certificate"),
                                 .key = valueOfServe(app, "--key")};
    if (!runDoctor(site, files)) throw CLI::RuntimeError(1);
  });
}

}  // namespace vantry::server
