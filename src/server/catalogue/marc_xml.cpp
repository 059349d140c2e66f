// MARCXML.

#include <algorithm>
#include <array>
#include <fstream>
#include <regex>
#include <stdexcept>

#include <libxml/xmlreader.h>

#include "server/catalogue/marc_characters.h"
#include "server/catalogue/marc_source.h"
#include "words/utf8.h"

namespace vantry::server {

namespace {

constexpr int quietly = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

/// Takes the place of a byte that is no character. Nobody has a use for this one.
constexpr std::string_view unreadable = "\xef\x9f\xbd";

struct FreeXml {
  void operator()(xmlChar* text) const { xmlFree(text); }
  void operator()(xmlTextReader* reader) const { xmlFreeTextReader(reader); }
};

std::string_view viewOf(const xmlChar* text) {
  return text == nullptr ? std::string_view{} : reinterpret_cast<const char*>(text);
}

bool isNamed(const xmlNode* node, std::string_view name) {
  return node->type == XML_ELEMENT_NODE && viewOf(node->name) == name;
}

std::string textOf(xmlNode* node) {
  const std::unique_ptr<xmlChar, FreeXml> text(xmlNodeGetContent(node));
  return std::string(viewOf(text.get()));
}

std::string attributeOf(xmlNode* node, const char* name) {
  const std::unique_ptr<xmlChar, FreeXml> text(xmlGetNoNsProp(node, reinterpret_cast<const xmlChar*>(name)));
  return std::string(viewOf(text.get()));
}

std::string indicatorOf(xmlNode* node, const char* name) {
  const std::string text = attributeOf(node, name);
  return text.size() == 1 ? text : " ";
}

MarcField controlField(xmlNode* node) {
  return {attributeOf(node, "tag"), {}, textOf(node)};
}

MarcField dataField(xmlNode* node) {
  MarcField field{attributeOf(node, "tag"), indicatorOf(node, "ind1") + indicatorOf(node, "ind2"), {}};
  for (xmlNode* child = node->children; child != nullptr; child = child->next) {
    if (!isNamed(child, "subfield")) continue;
    const std::string code = attributeOf(child, "code");
    if (code.size() == 1) field.text += marcSubfield(code.front(), textOf(child));
  }
  return field;
}

std::string readRecord(xmlNode* node, MarcReading& reading) {
  int readForeign = 0;
  int lostForeign = 0;
  for (xmlNode* child = node->children; child != nullptr; child = child->next) {
    if (isNamed(child, "leader")) reading.record.leader = textOf(child);
    const bool isData = isNamed(child, "datafield");
    if (!isData && !isNamed(child, "controlfield")) continue;
    MarcField field = isData ? dataField(child) : controlField(child);
    if (field.text.find(unreadable) != std::string::npos) {
      ++lostForeign;
      loseField(reading, field.tag, "holds characters that are none");
      continue;
    }
    if (!isAscii(field.text)) ++readForeign;
    takeField(reading, std::move(field));
  }
  if (lostForeign > 0 && readForeign == 0) reading.coding = MarcCoding::NotUtf8;
  if (reading.record.leader.size() != marcLeaderLength) return "its leader has not 24 characters";
  return reading.record.fields.empty() ? "it has no fields that can be read" : std::string();
}

/// A file whose bytes are all characters that XML allows: others would end the reading.
class CleanFile {
 public:
  CleanFile(const std::string& path, bool isUtf8) : file_(path, std::ios::binary), isUtf8_(isUtf8) {}

  static int read(void* self, char* buffer, int length) {
    return static_cast<CleanFile*>(self)->take(buffer, static_cast<std::size_t>(length));
  }
  static int close(void*) { return 0; }

 private:
  int take(char* buffer, std::size_t length) {
    while (taken_ == clean_.size() && fill()) {
    }
    const std::size_t count = std::min(length, clean_.size() - taken_);
    std::copy_n(clean_.data() + taken_, count, buffer);
    taken_ += count;
    return static_cast<int>(count);
  }

  /// False at the end of the file.
  bool fill() {
    std::array<char, 65536> portion{};
    file_.read(portion.data(), portion.size());
    rest_.append(portion.data(), static_cast<std::size_t>(file_.gcount()));
    if (rest_.empty()) return false;
    clean_.clear();
    taken_ = 0;
    if (isUtf8_) {
      clean(file_.eof() ? 0 : longestCharacter - 1);
    } else {
      clean_.swap(rest_);
    }
    return true;
  }

  /// Leaves so many bytes for the next time, since a character may lie across two portions.
  void clean(std::size_t left) {
    std::string_view text = rest_;
    while (text.size() > left) {
      const std::size_t length = characterLength(text);
      const bool isControl = length == 1 && holdsControls(text.substr(0, 1));
      const bool isNone = length == 0 || isControl || text.front() == marcMark ||
                          text.starts_with("\xef\xbf\xbe") || text.starts_with("\xef\xbf\xbf");
      clean_ += isNone ? unreadable : text.substr(0, length);
      text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    rest_.erase(0, rest_.size() - text.size());
  }

  static constexpr std::size_t longestCharacter = 4;
  std::ifstream file_;
  bool isUtf8_;
  std::string rest_;   ///< as it is in the file
  std::string clean_;  ///< to be handed out
  std::size_t taken_ = 0;
};

/// The code page that the document names; empty for none.
std::string namedEncoding(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string start(200, '\0');
  file.read(start.data(), static_cast<std::streamsize>(start.size()));
  start.resize(static_cast<std::size_t>(file.gcount()));
  static const std::regex declaration(R"(<\?xml[^>]*encoding\s*=\s*["']([A-Za-z0-9._-]+)["'])");
  std::smatch match;
  return std::regex_search(start, match, declaration) ? match[1].str() : std::string();
}

bool isNameOfUtf8(std::string name) {
  std::ranges::transform(name, name.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
  return name.empty() || name == "UTF-8" || name == "UTF8";
}

class XmlSource : public MarcReader::Source {
 public:
  XmlSource(const std::string& path, const std::string& encoding)
      : file_(path, isNameOfUtf8(encoding.empty() ? namedEncoding(path) : encoding)),
        reader_(xmlReaderForIO(CleanFile::read, CleanFile::close, &file_, path.c_str(),
                               encoding.empty() ? nullptr : encoding.c_str(), quietly)) {
    if (!reader_) throw std::runtime_error("The file " + path + " cannot be read.");
  }

  bool next(MarcReading& reading) override {
    if (ended_) return false;
    // The record before is left as a whole, whatever stands within it.
    int state = inRecord_ ? xmlTextReaderNext(reader_.get()) : xmlTextReaderRead(reader_.get());
    while (state == 1 && !atRecord()) state = xmlTextReaderRead(reader_.get());
    inRecord_ = state == 1;
    xmlNode* node = inRecord_ ? xmlTextReaderExpand(reader_.get()) : nullptr;
    if (node != nullptr) {
      reading.fault = readRecord(node, reading);
      return true;
    }
    ended_ = true;
    if (state == 0) return false;
    reading.fault = "the file is no sound XML from line " +
                    std::to_string(xmlTextReaderGetParserLineNumber(reader_.get())) + " on";
    return true;
  }

 private:
  bool atRecord() {
    return xmlTextReaderNodeType(reader_.get()) == XML_READER_TYPE_ELEMENT &&
           viewOf(xmlTextReaderConstLocalName(reader_.get())) == "record";
  }

  CleanFile file_;
  std::unique_ptr<xmlTextReader, FreeXml> reader_;
  bool inRecord_ = false;
  bool ended_ = false;
};

}  // namespace

std::unique_ptr<MarcReader::Source> openMarcXml(const std::string& path, const std::string& encoding) {
  return std::make_unique<XmlSource>(path, encoding);
}

}  // namespace vantry::server
