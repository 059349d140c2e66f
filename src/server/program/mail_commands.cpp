#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <vector>

#include <CLI/CLI.hpp>

#include "server/access/audit.h"
#include "server/base/user_error.h"
#include "server/desk/booking_store.h"
#include "server/mail/letter.h"
#include "server/mail/mail_carrier.h"
#include "server/mail/outbox.h"
#include "server/program/command_line.h"
#include "server/program/on_library.h"

namespace vantry::server {

namespace {

struct MailCommand {
  std::string to;
  std::string folder;
  std::int64_t id = 0;  ///< 0 for all
};

void listMail(const std::string& url) {
  const std::vector<OutboxRow> rows = readRows(url, outboxRows);
  for (const OutboxRow& row : rows) {
    std::cout << row.id << '\t' << mailKindName(row.kind) << '\t' << confirmationNumber(row.bookingId) << '\t'
              << (row.givenUp ? "given up" : "waits until " + momentText(row.dueAt)) << "\tqueued "
              << momentText(row.queuedAt) << '\t' << row.tries << " tries\t" << row.fault << '\n';
  }
  if (rows.empty()) std::cout << "No mail waits, and none was given up.\n";
}

std::string countText(std::int64_t count) {
  return count == 1 ? "1 mail" : std::to_string(count) + " mails";
}

void refuseNone(std::int64_t count, std::int64_t id) {
  if (count == 0 && id != 0) throw UserError("No mail with the number " + std::to_string(id) + " waits.");
}

void retry(const std::string& url, std::int64_t id) {
  std::int64_t count = 0;
  changeLibrary(url, [&](Connection& db) { count = retryMail(db, id, wallClock()); });
  refuseNone(count, id);
  std::cout << countText(count) << " will be sent as soon as a server runs.\n";
}

void drop(const std::string& url, std::int64_t id) {
  std::int64_t count = 0;
  changeLibrary(url, [&](Connection& db) {
    count = removeMail(db, id);
    if (count > 0) auditCommand(db, wallClock(), "mail dropped", {}, countText(count));
  });
  refuseNone(count, id);
  std::cout << countText(count) << " dropped.\n";
}

/// The server reads the texts as a user of its own.
void letAllRead(const std::string& path) {
  using std::filesystem::perms;
  const bool isFolder = std::filesystem::is_directory(path);
  const perms readable = perms::owner_read | perms::owner_write | perms::group_read | perms::others_read;
  const perms searchable = perms::owner_exec | perms::group_exec | perms::others_exec;
  std::filesystem::permissions(path, isFolder ? readable | searchable : readable);
}

/// Leaves what is there already.
void writeTexts(const std::string& folder) {
  std::error_code error;
  if (std::filesystem::create_directories(folder, error)) letAllRead(folder);
  for (const std::string_view name : mailTextNames()) {
    const std::string path = mailTextFile(folder, name);
    if (std::filesystem::exists(path, error)) {
      std::cout << path << " is there already, and stays as it is.\n";
      continue;
    }
    std::ofstream file(path, std::ios::binary);
    file << textOfFile(builtInText(name));
    file.close();
    if (!file) throw UserError(path + " cannot be written.");
    letAllRead(path);
    std::cout << path << " was written.\n";
  }
  std::cout << "Placeholders:\n";
  for (const Placeholder& each : mailPlaceholders())
    std::cout << "  {" << each.name << "}  " << each.meaning << '\n';
}

void tellKinds(const MailKinds& kinds) {
  std::cout << "Switched on:";
  for (const MailKind kind : allMailKinds) {
    if (kinds.has(kind)) std::cout << ' ' << mailKindName(kind);
  }
  std::cout << (kinds.any() ? "" : " nothing; see --mail-kinds") << ".\n";
}

/// False when a file has a fault.
bool tellTexts(const std::string& folder) {
  bool isSound = true;
  for (const std::string_view name : mailTextNames()) {
    const UsedText used = usedText(folder, name);
    for (const std::string& fault : used.faults) std::cerr << fault << '\n';
    if (!used.faults.empty()) isSound = false;
    if (used.faults.empty())
      std::cout << name << ": " << (used.isBuiltIn ? "the built-in text" : mailTextFile(folder, name))
                << ".\n";
  }
  return isSound;
}

void sendTrial(const MailSettings& settings, MailCarrier& carrier, const std::string& to) {
  const Moment now = wallClock();
  const MailSender from = senderIn(settings.from);
  const LetterHead head{
      .from = from, .toName = {}, .toAddress = to, .id = "vantry.trial." + std::to_string(now), .at = now};
  const std::string text = letterText(
      head, {"A trial of the booking desk's mail", "This is a trial: the booking server can send mail.\n"});
  const Delivery delivery = carrier.carry({.from = from.address, .to = to, .text = text}, {});
  if (delivery.kind != Delivery::Kind::Sent)
    throw UserError("The trial was not sent: " + delivery.fault + ".");
  std::cout << "A trial was sent to " << to << ".\n";
}

void check(const MailSettings& settings, const std::string& to) {
  tellKinds(settings.kinds);
  const bool isSound = tellTexts(settings.texts);
  std::cout << "Sent by " << senderIn(settings.from).address << " through " << settings.through << ".\n";
  const std::unique_ptr<MailCarrier> carrier = makeCarrier(settings);
  if (!isSound) throw UserError("Where a text has a fault, the built-in one is sent.");
  if (!to.empty()) sendTrial(settings, *carrier, to);
}

MailKinds kindsNamed(const std::vector<std::string>& names) {
  MailKinds kinds;
  for (const std::string& name : names) {
    if (const auto kind = mailKindNamed(name)) kinds.add(*kind);
  }
  return kinds;
}

std::vector<std::string> kindNames() {
  std::vector<std::string> names;
  for (const MailKind kind : allMailKinds) names.emplace_back(mailKindName(kind));
  return names;
}

}  // namespace

void describeMailSettings(CLI::App& app, MailSettings& mail) {
  constexpr const char* group = "Mail to patrons";
  app.add_option_function<std::vector<std::string>>(
         "--mail-kinds", [&mail](const std::vector<std::string>& names) { mail.kinds = kindsNamed(names); },
         "What patrons are told by mail, parted by commas; nothing without it")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->check(CLI::IsMember(kindNames()))
      ->group(group);
  app.add_option("--mail-from", mail.from, "Who sends it: 'Booking Desk <desk@library.example>'")
      ->group(group);
  app.add_option("--mail-through", mail.through,
                 "sendmail, the path of a program like it, smtp://host:587 or smtps://host")
      ->capture_default_str()
      ->group(group);
  app.add_option("--mail-user", mail.user, "User at the mail server")->group(group);
  app.add_option("--mail-password-file", mail.passwordFile, "File whose first line is the password")
      ->group(group);
  app.add_option("--mail-authority", mail.authority,
                 "PEM file of who vouches for the mail server; the system's without it")
      ->group(group);
  app.add_option("--mail-texts", mail.texts, "Folder of the texts")->capture_default_str()->group(group);
}

void describeMail(CLI::App& app, const Site& site) {
  const auto given = std::make_shared<MailCommand>();
  CLI::App* mail = app.add_subcommand("mail", "Mail to patrons")->require_subcommand(1);
  mail->add_subcommand("list", "List what waits and what was given up")->callback([&site] {
    listMail(site.database);
  });
  CLI::App* checking = mail->add_subcommand("check", "Tell what is wrong with the settings and the texts");
  checking->add_option("--to", given->to, "Send a trial to this address");
  checking->callback([given, &site] { check(site.mail, given->to); });
  CLI::App* retrying = mail->add_subcommand("retry", "Send what waits, and what was given up, now");
  retrying->add_option("number", given->id, "Only this one of the list")->check(CLI::PositiveNumber);
  retrying->callback([given, &site] { retry(site.database, given->id); });
  CLI::App* dropping = mail->add_subcommand("drop", "Take mail that was not sent out of the list");
  dropping->add_option("number", given->id, "Only this one of the list")->check(CLI::PositiveNumber);
  dropping->callback([given, &site] { drop(site.database, given->id); });
  CLI::App* texts = mail->add_subcommand("texts", "Write the built-in texts as files that you can change");
  texts->add_option("folder", given->folder, "/etc/vantry/mail for example")->required();
  texts->callback([given] { writeTexts(given->folder); });
}

}  // namespace vantry::server
