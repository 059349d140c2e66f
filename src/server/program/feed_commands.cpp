#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "server/program/command_line.h"
#include "server/program/on_library.h"
#include "server/setup/feed_administration.h"

namespace vantry::server {

namespace {

constexpr int mostDays = 1100;  // some three years

struct FeedCommand {
  FeedWish wish;
  std::string server;
  std::int64_t id = 0;
};

void addFeedOf(const std::string& database, const FeedCommand& command) {
  AddedFeed added;
  changeLibrary(database, [&](Connection& db) { added = addFeed(db, command.wish, wallClock()); });
  std::cout << "Feed " << added.id
            << " is ready. Its address is told this once; whoever has it can read the feed:\n"
            << command.server << "/v1/feeds/" << added.secret << ".ics\n";
}

std::string_view kindOf(const Feed& feed) {
  if (feed.locationId != 0) return "desk";
  return feed.roomId != 0 ? "room" : "group";
}

void listFeeds(const std::string& database) {
  for (const Feed& feed : readRows(database, allFeeds)) {
    std::cout << feed.id << '\t' << kindOf(feed) << '\t' << feed.subject << '\t' << feed.library << '\t'
              << (feed.showsNames ? "with names" : "without names") << '\t' << feed.daysBack << " days back, "
              << feed.daysAhead << " ahead\t" << dateText(feed.createdAt) << '\n';
  }
}

void revokeFeedOf(const std::string& database, std::int64_t id) {
  changeLibrary(database, [&](Connection& db) { revokeFeed(db, id, wallClock()); });
  std::cout << "Feed " << id << " is revoked: nobody can read it any more.\n";
}

void describeAdd(CLI::App& add, FeedCommand& given) {
  CLI::App* subject = add.add_option_group("Of what")->require_option(1);
  subject->add_option("--desk", given.wish.desk, "The bookings that a desk makes");
  subject->add_option("--room", given.wish.room, "The bookings of a room, LOCATION/NUMBER");
  CLI::Option* group = subject->add_option("--group", given.wish.group, "The bookings of a patron group");
  add.add_option("--library", given.wish.library,
                 "Whose bookings of the group, where there are several libraries")
      ->needs(group);
  add.add_flag("--names", given.wish.showsNames,
               "Show who has booked; patrons who are not to be remembered stay hidden");
  add.add_option("--days-back", given.wish.daysBack, "From so many days ago on")
      ->check(CLI::Range(0, mostDays))
      ->capture_default_str();
  add.add_option("--days-ahead", given.wish.daysAhead, "For so many days from now on")
      ->check(CLI::Range(0, mostDays))
      ->capture_default_str();
  add.add_option("--server", given.server,
                 "How the server is reached, https://booking.example.org; only printed before the address");
}

}  // namespace

void describeFeeds(CLI::App& app, const Site& site) {
  const auto given = std::make_shared<FeedCommand>();
  CLI::App* feeds =
      app.add_subcommand("feed", "Bookings for programs that show calendars, at secret addresses")
          ->require_subcommand(1);
  CLI::App* add = feeds->add_subcommand("add", "Make a feed and print its address");
  describeAdd(*add, *given);
  add->callback([given, &site] { addFeedOf(site.database, *given); });
  feeds->add_subcommand("list", "List them, without their addresses")->callback([given, &site] {
    listFeeds(site.database);
  });
  CLI::App* revoke = feeds->add_subcommand("revoke", "Make an address worthless");
  revoke->add_option("id", given->id, "The number of the feed, as the list tells it")->required();
  revoke->callback([given, &site] { revokeFeedOf(site.database, given->id); });
}

}  // namespace vantry::server
