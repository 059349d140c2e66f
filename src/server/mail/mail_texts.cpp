#include "server/mail/mail_texts.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "words/utf8.h"

namespace vantry::server {

namespace {

constexpr std::array placeholders{
    Placeholder{"name", "first and last name of the patron"},
    Placeholder{"number", "confirmation number of the booking"},
    Placeholder{"start", "when it begins"},
    Placeholder{"end", "when it ends"},
    Placeholder{"place", "its room, or the location where things are fetched"},
    Placeholder{"things", "equipment and media, one a line"},
    Placeholder{"count", "how many bookings the mail tells of"},
    Placeholder{"dates", "these bookings with their times, one a line"},
    Placeholder{"library", "name of the library"},
    Placeholder{"desk", "name of the booking desk's location"},
};

constexpr std::string_view opening = "Subject: ";
constexpr std::size_t longestFile = 64 * 1024;

struct BuiltIn {
  std::string_view name;
  MailText text;
};

const std::array builtIns{
    BuiltIn{"confirmed",
            {"Your booking {number}",
             "Dear {name},\n\nyour booking {number} is made.\n\n"
             "From: {start}\nUntil: {end}\nWhere: {place}\n\n{things}\n\n{library}, {desk}\n"}},
    BuiltIn{severalConfirmed,
            {"Your {count} bookings",
             "Dear {name},\n\n{count} bookings are made for you:\n\n{dates}\n\n"
             "Where: {place}\n\n{things}\n\n{library}, {desk}\n"}},
    BuiltIn{"changed",
            {"Your booking {number} has changed",
             "Dear {name},\n\nyour booking {number} has changed. It is now:\n\n"
             "From: {start}\nUntil: {end}\nWhere: {place}\n\n{things}\n\n{library}, {desk}\n"}},
    BuiltIn{"cancelled",
            {"Your booking {number} is canceled",
             "Dear {name},\n\nyour booking {number} from {start} to {end} is canceled.\n\n"
             "{library}, {desk}\n"}},
    BuiltIn{"due",
            {"Please return tomorrow: booking {number}",
             "Dear {name},\n\nthe things of your booking {number} are due back on {end}.\n\n"
             "{things}\n\n{library}, {desk}\n"}},
    BuiltIn{"overdue",
            {"Overdue: booking {number}",
             "Dear {name},\n\nthe things of your booking {number} were due back on {end}. "
             "Please return them.\n\n{things}\n\n{library}, {desk}\n"}},
};

/// Calls for each placeholder, known or not, with its place and its name. A brace that encloses blanks or
/// nothing is text.
void visitPlaceholders(std::string_view text,
                       const std::function<void(std::size_t at, std::string_view name)>& visit) {
  for (std::size_t at = text.find('{'); at != std::string_view::npos; at = text.find('{', at + 1)) {
    const std::size_t end = text.find_first_of("{} \n", at + 1);
    if (end == std::string_view::npos || text[end] != '}' || end == at + 1) continue;
    visit(at, text.substr(at + 1, end - at - 1));
  }
}

std::string filled(std::string_view text, const MailValues& values) {
  std::string result;
  std::size_t done = 0;
  visitPlaceholders(text, [&](std::size_t at, std::string_view name) {
    const auto value = values.find(name);
    if (value == values.end()) return;
    result.append(text.substr(done, at - done)).append(value->second);
    done = at + name.size() + 2;
  });
  return result.append(text.substr(done));
}

/// Whole lines become empty where a value is: no more than one empty line is left in a row.
std::string withoutGaps(const std::string& text) {
  std::string result;
  for (const char sign : text) {
    if (sign != '\n' || !result.ends_with("\n\n")) result += sign;
  }
  return result;
}

/// Without the mark that some editors put before the text, and with one kind of line ends.
std::string plainText(std::string text) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(byteOrderMark)) text.erase(0, byteOrderMark.size());
  std::erase(text, '\r');
  return text;
}

class FileReader {
 public:
  explicit FileReader(std::string path) : path_(std::move(path)) {}

  /// Leaves the faults behind when there is something wrong.
  MailText read(std::vector<std::string>& faults) {
    std::ifstream file(path_, std::ios::binary);
    std::string text(longestFile + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    if (text.empty()) return fault(faults, "it is empty or cannot be read");
    if (text.size() > longestFile) return fault(faults, "it is longer than 64 KiB");
    text = plainText(std::move(text));
    if (!isUtf8(text)) return fault(faults, "it is not written in UTF-8");
    checkPlaceholders(text, faults);
    return parted(text, faults);
  }

 private:
  MailText fault(std::vector<std::string>& faults, const std::string& what) const {
    faults.push_back(path_ + ": " + what + ".");
    return {};
  }

  void checkPlaceholders(std::string_view text, std::vector<std::string>& faults) const {
    visitPlaceholders(text, [&](std::size_t at, std::string_view name) {
      if (std::ranges::find(placeholders, name, &Placeholder::name) != placeholders.end()) return;
      const auto line = std::ranges::count(text.substr(0, at), '\n') + 1;
      fault(faults, "line " + std::to_string(line) + ": there is no placeholder {" + std::string(name) + "}");
    });
  }

  MailText parted(std::string_view text, std::vector<std::string>& faults) const {
    const std::size_t end = text.find('\n');
    const bool named = text.starts_with(opening) && end != std::string_view::npos && end > opening.size();
    if (!named) return fault(faults, "line 1: it begins with \"Subject: \" and the subject");
    if (text.substr(end + 1, 1) != "\n") return fault(faults, "line 2: an empty line follows the subject");
    const std::string_view body = text.substr(end + 2);
    if (body.find_first_not_of(" \n\t") == std::string_view::npos) return fault(faults, "it has no body");
    return {std::string(text.substr(opening.size(), end - opening.size())), std::string(body)};
  }

  std::string path_;
};

}  // namespace

std::vector<Placeholder> mailPlaceholders() {
  return {placeholders.begin(), placeholders.end()};
}

std::vector<std::string_view> mailTextNames() {
  std::vector<std::string_view> names;
  for (const BuiltIn& each : builtIns) names.push_back(each.name);
  return names;
}

const MailText& builtInText(std::string_view name) {
  return std::ranges::find(builtIns, name, &BuiltIn::name)->text;
}

std::string textOfFile(const MailText& text) {
  return std::string(opening) + text.subject + "\n\n" + text.body;
}

std::string mailTextFile(const std::string& folder, std::string_view name) {
  return (std::filesystem::path(folder) / (std::string(name) + ".txt")).string();
}

UsedText usedText(const std::string& folder, std::string_view name) {
  UsedText used;
  used.text = builtInText(name);
  const std::string path = mailTextFile(folder, name);
  std::error_code none;
  if (folder.empty() || !std::filesystem::exists(path, none)) return used;
  const MailText text = FileReader(path).read(used.faults);
  if (!used.faults.empty()) return used;
  used.text = text;
  used.isBuiltIn = false;
  return used;
}

MailText filledText(const MailText& text, const MailValues& values) {
  MailText result{filled(text.subject, values), withoutGaps(filled(text.body, values))};
  std::ranges::replace_if(
      result.subject, [](char sign) { return static_cast<unsigned char>(sign) < ' '; }, ' ');
  return result;
}

}  // namespace vantry::server
