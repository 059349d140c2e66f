// Writes docs/protocol.md from the tables of the words, or checks that a file is what would be written.

#include <cctype>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>

#include "words/request_tables.h"
#include "words/tags.h"

namespace {

using namespace vantry;

constexpr std::string_view kOpening =
    R"(<!-- Written by the build target protocol_page from the tables in src/words: change those. -->

# Requests and tags

Workstation and server speak in requests: a code, with tags and their values in a fixed order. The answer is a
return code, 0 for success, and tags again: those of the head, which stand once, and records. How a request
travels is told in [protocol-http.md](protocol-http.md).

## How to read the requests

*Sent* is a pattern of tags. They stand in this order. `( )` groups, `|` separates alternatives inside a group;
`?` behind a tag or a group means that it may be left out, `*` that it may be left out or repeated, `+` that it
stands once or more. A name behind a colon is the form of the value where it is not the tag's usual one.

Each record carries the tag that it is *walked by*; where there are several, each record carries at least one of
them. Heads and records leave out tags without a value.

An operator needs one of the *rights* named. Requests marked as *writing* may change stored data.

A message that does not fit its pattern, or has a value that has not its form, is answered with -98, and
`CANTREAD` in the head names the tag. Empty text is sound in every form.

| Form | Value |
|---|---|
| Id, Count | whole number of 32 bits in decimal figures, with an optional minus |
| Name | any text |
| Flag | `Y` or `N` |
| Date | `YYYY-MM-DD`; month and day may have one figure |
| Time | `YYYY-MM-DD HH:MM:SS`, or a date, or a clock time `HHMM` |
| Money | figures with an optional minus and at most one decimal point |
)";

std::string capitalised(std::string_view text) {
  std::string result(text);
  if (!result.empty()) result[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(result[0])));
  return result;
}

void writeLine(std::ostream& page, std::string_view title, std::string_view tags) {
  if (!tags.empty()) page << "- " << title << ": `" << tags << "`\n";
}

void writeRequest(std::ostream& page, const RequestRow& row) {
  page << "\n### " << row.code << "\n\n" << capitalised(row.meaning) << ".\n\n";
  page << "- sent: " << (row.sent.empty() ? "nothing" : "`" + std::string(row.sent) + "`") << "\n";
  writeLine(page, "head", row.head);
  writeLine(page, "records", row.records);
  writeLine(page, "walked by", row.walk);
  page << "- rights: " << (row.rights.empty() ? "every operator" : "`" + std::string(row.rights) + "`")
       << (row.writes ? "; writing" : "") << "\n";
}

void writeRequests(std::ostream& page, std::string_view subject, std::span<const RequestRow> rows) {
  page << "\n## " << subject << "\n";
  for (const RequestRow& row : rows) writeRequest(page, row);
}

void writeDictionary(std::ostream& page) {
  page << "\n## Tags\n\n| Tag | Form | Carries |\n|---|---|---|\n";
  for (const TagRow& row : tagTable()) {
    page << "| `" << row.tag << "` | " << nameOf(row.form) << " | " << row.meaning << " |\n";
  }
}

std::string pageText() {
  std::ostringstream page;
  page << kOpening;
  writeRequests(page, "Requests: log-on, overrides, staff, counters of patrons", operatorRequests());
  writeRequests(page, "Requests: inventory", inventoryRequests());
  writeRequests(page, "Requests: bookings and policy", bookingRequests());
  writeRequests(page, "Requests: schedule, monitor, circulation, search", scheduleRequests());
  writeDictionary(page);
  return page.str();
}

int check(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  if (file && text == pageText()) return 0;
  std::cerr << path << " is not what the tables say: build the target protocol_page\n";
  return 1;
}

int write(const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  file << pageText();
  file.close();
  if (file) return 0;
  std::cerr << "cannot write " << path << "\n";
  return 1;
}

}  // namespace

int main(int count, char* arguments[]) {
  if (count == 3 && std::string_view(arguments[1]) == "--check") return check(arguments[2]);
  if (count == 2) return write(arguments[1]);
  std::cerr << "usage: protocol_writer [--check] FILE\n";
  return 2;
}
