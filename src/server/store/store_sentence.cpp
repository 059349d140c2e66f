#include "server/store/store_sentence.h"

#include <array>
#include <stdexcept>

#include <spdlog/spdlog.h>

namespace vantry::server {

namespace {

struct Sentence {
  StoreError::Kind kind;
  std::string_view end;  ///< behind the database's name
};

using Kind = StoreError::Kind;

constexpr std::array sentences{
    Sentence{Kind::Busy, "is held by another program. Try again when that has ended."},
    Sentence{Kind::Unreachable,
             "cannot be reached: its server does not run, or does not take this name, password or database. "
             "The log tells what it said."},
    Sentence{Kind::Absent, "cannot be opened: its folder is missing, or this user may not read it."},
    Sentence{Kind::Missing,
             "is not there: its name may be mistyped. The commands setup and init make a new one."},
    Sentence{Kind::Moved, "was moved or replaced while it was in use."},
    Sentence{Kind::Empty,
             "holds no library. The command setup makes one, the command demo makes an example."},
    Sentence{Kind::Older, "is of an older version. The command init brings it up to date."},
    Sentence{Kind::Foreign, "is no database of this program: the file holds something else."},
    Sentence{Kind::Newer, "was written by a newer version of this program."},
    Sentence{Kind::ReadOnly, "can be read only: this user may not write it."},
};

constexpr std::string_view seeLog = "The log tells what it said.";
constexpr std::string_view otherwise = "cannot be used. The log tells what it said.";

}  // namespace

/// Nothing before the host, where name and password stand, and nothing behind the database.
std::string_view plainDatabaseName(std::string_view url) {
  if (dialectOf(url).kind == Dialect::Kind::Sqlite) return url;
  url = url.substr(0, url.find('?'));
  if (const std::size_t at = url.rfind('@'); at != std::string_view::npos) return url.substr(at + 1);
  return url.substr(url.find("//") + 2);
}

std::string sentenceFor(StoreError::Kind kind, std::string_view url) {
  std::string text = "The database \"" + std::string(plainDatabaseName(url)) + "\" ";
  for (const Sentence& each : sentences) {
    if (each.kind == kind) return text.append(each.end);
  }
  return text.append(otherwise);
}

void tellingPlainly(const std::string& url, const std::function<void()>& work) {
  try {
    work();
  } catch (const StoreError& error) {
    const std::string sentence = sentenceFor(error.kind(), url);
    if (sentence.ends_with(seeLog)) spdlog::error("{}", error.what());
    throw std::runtime_error(sentence);
  }
}

}  // namespace vantry::server
