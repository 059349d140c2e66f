#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vantry::server {

/// Turns the characters of exchanged records into UTF-8.
class MarcCharacters {
 public:
  /// `name` is that of a code page, "MARC-8" among them. Throws UserError for one that is unknown.
  explicit MarcCharacters(const std::string& name);
  ~MarcCharacters();
  MarcCharacters(const MarcCharacters&) = delete;
  MarcCharacters& operator=(const MarcCharacters&) = delete;

  /// Nothing where the bytes are no characters of the code page.
  [[nodiscard]] std::optional<std::string> toUtf8(std::string_view text) const;

 private:
  struct Converter;
  std::unique_ptr<Converter> converter_;
};

[[nodiscard]] bool isAscii(std::string_view text);

}  // namespace vantry::server
