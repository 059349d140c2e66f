#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vantry::server {

/// A field as tests write it: {"245", "10$aBees /$cby A. Keeper."}; a control field has no "$".
using MarcLine = std::pair<std::string, std::string>;

/// A text as records hold it, with the mark of a subfield in place of each "$".
[[nodiscard]] std::string marked(std::string text);

/// One exchanged record, with the leader's lengths as they must be. `kind` is the leader's seventh character.
[[nodiscard]] std::string exchanged(const std::vector<MarcLine>& lines, char kind = 'g', char coding = 'a');

/// The same as an element of MARCXML.
[[nodiscard]] std::string marcXml(const std::vector<MarcLine>& lines, char kind = 'g');

/// The elements as one document.
[[nodiscard]] std::string marcXmlFile(const std::vector<std::string>& records);

void writeFile(const std::string& path, const std::string& content);

}  // namespace vantry::server
