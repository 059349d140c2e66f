#include "server/catalogue/marc_reader.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include <libxml/xmlreader.h>
#include <yaz/marcdisp.h>
#include <yaz/wrbuf.h>
#include <yaz/yaz-iconv.h>

#include "server/base/number_text.h"

namespace vantry::server {

class MarcReader::Source {
 public:
  Source() = default;
  virtual ~Source() = default;
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  virtual bool next(MarcRecord& record, std::string& fault) = 0;
};

namespace {

constexpr char recordEnd = '\x1d';
constexpr std::size_t leaderLength = 24;
constexpr std::size_t lengthFigures = 5;
constexpr std::size_t codingPlace = 9;
constexpr int quietly = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

struct FreeXml {
  void operator()(xmlChar* text) const { xmlFree(text); }
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
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

/// The marks have a meaning of their own within a field.
std::string withoutMarks(std::string text) {
  std::erase_if(text, [](char c) { return c == marcMark || c == '\x1e' || c == recordEnd; });
  return text;
}

std::string indicatorOf(xmlNode* node, const char* name) {
  const std::string text = attributeOf(node, name);
  return text.size() == 1 ? text : " ";
}

MarcField dataField(xmlNode* node) {
  MarcField field{attributeOf(node, "tag"), indicatorOf(node, "ind1") + indicatorOf(node, "ind2"), {}};
  for (xmlNode* child = node->children; child != nullptr; child = child->next) {
    if (!isNamed(child, "subfield")) continue;
    const std::string code = attributeOf(child, "code");
    if (code.size() == 1) field.text += marcSubfield(code.front(), withoutMarks(textOf(child)));
  }
  return field;
}

bool isTag(std::string_view tag) {
  return tag.size() == 3 && std::ranges::all_of(tag, [](char c) {
           return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
         });
}

/// What is wrong with a record that could be taken apart; empty for nothing.
std::string faultOf(const MarcRecord& record) {
  if (record.leader.size() != leaderLength) return "its leader has not 24 characters";
  if (record.fields.empty()) return "it has no fields";
  const auto odd = std::ranges::find_if(record.fields, [](const MarcField& field) {
    return !isTag(field.tag) || (!field.indicators.empty() && field.text.empty());
  });
  return odd == record.fields.end() ? std::string() : "its field \"" + odd->tag + "\" is none";
}

MarcRecord recordOf(xmlNode* node) {
  MarcRecord record;
  for (xmlNode* child = node->children; child != nullptr; child = child->next) {
    if (isNamed(child, "leader")) record.leader = textOf(child);
    if (isNamed(child, "controlfield"))
      record.fields.push_back({attributeOf(child, "tag"), {}, withoutMarks(textOf(child))});
    if (isNamed(child, "datafield")) record.fields.push_back(dataField(child));
  }
  return record;
}

class XmlSource : public MarcReader::Source {
 public:
  explicit XmlSource(const std::string& path) : reader_(xmlReaderForFile(path.c_str(), nullptr, quietly)) {
    if (!reader_) throw std::runtime_error("The file " + path + " cannot be read.");
  }

  bool next(MarcRecord& record, std::string& fault) override {
    if (ended_) return false;
    // The record before is left as a whole, whatever stands within it.
    int state = inRecord_ ? xmlTextReaderNext(reader_.get()) : xmlTextReaderRead(reader_.get());
    while (state == 1 && !atRecord()) state = xmlTextReaderRead(reader_.get());
    inRecord_ = state == 1;
    xmlNode* node = inRecord_ ? xmlTextReaderExpand(reader_.get()) : nullptr;
    if (node != nullptr) {
      record = recordOf(node);
      fault = faultOf(record);
      return true;
    }
    ended_ = true;
    if (state == 0) return false;
    fault = "the file is no sound XML from line " +
            std::to_string(xmlTextReaderGetParserLineNumber(reader_.get())) + " on";
    return true;
  }

 private:
  bool atRecord() {
    return xmlTextReaderNodeType(reader_.get()) == XML_READER_TYPE_ELEMENT &&
           viewOf(xmlTextReaderConstLocalName(reader_.get())) == "record";
  }

  std::unique_ptr<xmlTextReader, FreeXml> reader_;
  bool inRecord_ = false;
  bool ended_ = false;
};

/// YAZ's part: one exchanged record, told as MARCXML in UTF-8.
class Decoder {
 public:
  Decoder()
      : marc_(yaz_marc_create()), buffer_(wrbuf_alloc()), fromMarc8_(yaz_iconv_open("UTF-8", "MARC-8")) {}
  ~Decoder() {
    if (fromMarc8_ != nullptr) yaz_iconv_close(fromMarc8_);
    wrbuf_destroy(buffer_);
    yaz_marc_destroy(marc_);
  }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  /// Empty when it cannot be taken apart.
  std::string_view decode(const std::string& exchanged) {
    yaz_marc_reset(marc_);
    wrbuf_rewind(buffer_);
    yaz_marc_iconv(marc_, exchanged[codingPlace] == 'a' ? nullptr : fromMarc8_);
    const int read = yaz_marc_read_iso2709(marc_, exchanged.data(), static_cast<int>(exchanged.size()));
    if (read <= 0 || yaz_marc_write_marcxml(marc_, buffer_) != 0) return {};
    return {wrbuf_buf(buffer_), wrbuf_len(buffer_)};
  }

 private:
  yaz_marc_t marc_;
  WRBUF buffer_;
  yaz_iconv_t fromMarc8_;
};

class ExchangeSource : public MarcReader::Source {
 public:
  explicit ExchangeSource(const std::string& path) : file_(path, std::ios::binary) {}

  bool next(MarcRecord& record, std::string& fault) override {
    std::string exchanged;
    const bool whole = takeRecord(exchanged);
    if (exchanged.empty()) return false;
    record = {};
    fault = !whole ? "it is cut off" : read(record, exchanged);
    return true;
  }

 private:
  /// Records end in a mark, so that one whose length is wrong does not spoil those after it. False without
  /// it.
  bool takeRecord(std::string& exchanged) {
    std::getline(file_, exchanged, recordEnd);
    const bool whole = !file_.eof();
    const std::size_t start = exchanged.find_first_not_of(" \r\n\t\x1a");
    exchanged.erase(0, std::min(start, exchanged.size()));
    if (whole) exchanged += recordEnd;
    return whole;
  }

  std::string read(MarcRecord& record, const std::string& exchanged) {
    if (exchanged.size() <= leaderLength) return "it is shorter than a leader";
    if (numberOf(exchanged.substr(0, lengthFigures)) != static_cast<std::int64_t>(exchanged.size()))
      return "its leader tells another length";
    const std::string_view xml = decoder_.decode(exchanged);
    const std::unique_ptr<xmlDoc, FreeXml> document(
        xml.empty() ? nullptr
                    : xmlReadMemory(xml.data(), static_cast<int>(xml.size()), nullptr, nullptr, quietly));
    xmlNode* root = document ? xmlDocGetRootElement(document.get()) : nullptr;
    if (root == nullptr) return "it cannot be taken apart, or holds characters that are none";
    record = recordOf(root);
    return faultOf(record);
  }

  std::ifstream file_;
  Decoder decoder_;
};

/// The first character that tells what the file holds; 0 for a file without one.
char firstCharacter(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("The file " + path + " cannot be read.");
  constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
  char each = 0;
  while (file.get(each)) {
    if (each != ' ' && each != '\r' && each != '\n' && each != '\t' &&
        byteOrderMark.find(each) == std::string_view::npos)
      return each;
  }
  return 0;
}

std::unique_ptr<MarcReader::Source> openSource(const std::string& path) {
  const char first = firstCharacter(path);
  if (first == '<') return std::make_unique<XmlSource>(path);
  if (first >= '0' && first <= '9') return std::make_unique<ExchangeSource>(path);
  throw std::runtime_error("The file " + path + " holds neither MARC 21 nor MARCXML.");
}

}  // namespace

MarcReader::MarcReader(const std::string& path) : source_(openSource(path)) {}

MarcReader::~MarcReader() = default;

bool MarcReader::next(MarcRecord& record, std::string& fault) {
  fault.clear();
  return source_->next(record, fault);
}

}  // namespace vantry::server
