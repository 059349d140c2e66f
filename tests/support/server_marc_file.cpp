#include "support/server_marc_file.h"

#include <algorithm>
#include <fstream>

namespace vantry::server {

namespace {

constexpr char subfieldMark = '\x1f';
constexpr char fieldEnd = '\x1e';
constexpr char recordEnd = '\x1d';

std::string figures(std::size_t number, std::size_t count) {
  const std::string text = std::to_string(number);
  return std::string(count - std::min(count, text.size()), '0') + text;
}

std::string leader(std::size_t length, std::size_t base, char kind, char coding) {
  return figures(length, 5) + "n" + kind + "m " + coding + "22" + figures(base, 5) + "   4500";
}

std::string escaped(const std::string& text) {
  std::string safe;
  for (const char c : text) safe += c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
  return safe;
}

}  // namespace

std::string marked(std::string text) {
  std::ranges::replace(text, '$', subfieldMark);
  return text;
}

std::string exchanged(const std::vector<MarcLine>& lines, char kind, char coding) {
  std::string directory;
  std::string fields;
  for (const auto& [tag, text] : lines) {
    const std::string field = marked(text) + fieldEnd;
    directory += tag + figures(field.size(), 4) + figures(fields.size(), 5);
    fields += field;
  }
  directory += fieldEnd;
  const std::size_t base = 24 + directory.size();
  return leader(base + fields.size() + 1, base, kind, coding) + directory + fields + recordEnd;
}

std::string marcXml(const std::vector<MarcLine>& lines, char kind) {
  std::string xml = "<record><leader>" + leader(0, 0, kind, 'a') + "</leader>\n";
  for (const auto& [tag, text] : lines) {
    if (tag < "010") {
      xml += "<controlfield tag=\"" + tag + "\">" + escaped(text) + "</controlfield>\n";
      continue;
    }
    xml += "<datafield tag=\"" + tag + "\" ind1=\"" + text[0] + "\" ind2=\"" + text[1] + "\">";
    for (std::size_t at = text.find('$'); at != std::string::npos;) {
      const std::size_t end = text.find('$', at + 1);
      xml += std::string("<subfield code=\"") + text[at + 1] + "\">" +
             escaped(text.substr(at + 2, end == std::string::npos ? end : end - at - 2)) + "</subfield>";
      at = end;
    }
    xml += "</datafield>\n";
  }
  return xml + "</record>\n";
}

std::string marcXmlFile(const std::vector<std::string>& records) {
  std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<collection xmlns=\"http://www.loc.gov/MARC21/slim\">\n";
  for (const std::string& record : records) xml += record;
  return xml + "</collection>\n";
}

void writeFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

}  // namespace vantry::server
