#include "server/catalogue/marc_characters.h"

#include <algorithm>
#include <array>

#include <yaz/yaz-iconv.h>

#include "server/base/user_error.h"
#include "words/utf8.h"

namespace vantry::server {

namespace {

constexpr std::size_t failed = static_cast<std::size_t>(-1);

}  // namespace

struct MarcCharacters::Converter {
  explicit Converter(const std::string& name) : handle(yaz_iconv_open("UTF-8", name.c_str())) {
    if (handle == nullptr) throw UserError("There is no code page named \"" + name + "\".");
  }
  ~Converter() { yaz_iconv_close(handle); }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  yaz_iconv_t handle;
};

MarcCharacters::MarcCharacters(const std::string& name) : converter_(std::make_unique<Converter>(name)) {}

MarcCharacters::~MarcCharacters() = default;

std::optional<std::string> MarcCharacters::toUtf8(std::string_view text) const {
  yaz_iconv_t handle = converter_->handle;
  yaz_iconv(handle, nullptr, nullptr, nullptr, nullptr);
  std::string converted;
  std::array<char, 1024> portion{};
  // The library takes its input by a pointer that it could write through, and does not.
  auto* in = const_cast<char*>(text.data());
  std::size_t left = text.size();
  bool flushing = text.empty();
  while (true) {
    char* out = portion.data();
    std::size_t room = portion.size();
    const std::size_t done = flushing ? yaz_iconv(handle, nullptr, nullptr, &out, &room)
                                      : yaz_iconv(handle, &in, &left, &out, &room);
    converted.append(portion.data(), portion.size() - room);
    if (done == failed && yaz_iconv_error(handle) != YAZ_ICONV_E2BIG) return std::nullopt;
    if (done == failed) continue;
    if (flushing) return isUtf8(converted) ? std::optional(converted) : std::nullopt;
    flushing = true;
  }
}

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace vantry::server
