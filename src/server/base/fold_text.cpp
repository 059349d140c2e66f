#include "server/base/fold_text.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <vector>

#include <unicode/normalizer2.h>
#include <unicode/translit.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/uscript.h>

namespace vantry::server {

namespace {

void require(UErrorCode code) {
  if (U_FAILURE(code) != 0) throw std::runtime_error(u_errorName(code));
}

/// Latin letters that are no letter with a mark, such as "ø" and "æ", as plain ones.
class PlainLetters {
 public:
  PlainLetters() {
    UErrorCode code = U_ZERO_ERROR;
    const std::unique_ptr<icu::Transliterator> latin(
        icu::Transliterator::createInstance("Latin-ASCII", UTRANS_FORWARD, code));
    require(code);
    for (UChar32 letter = first; letter < end; ++letter) {
      icu::UnicodeString plain(letter);
      latin->transliterate(plain);
      plain_.push_back(plain.toLower());
    }
  }

  void append(icu::UnicodeString& to, UChar32 letter) const {
    if (letter >= first && letter < end && u_isalpha(letter) != 0) {
      to.append(plain_[static_cast<std::size_t>(letter - first)]);
    } else {
      to.append(letter);
    }
  }

 private:
  static constexpr UChar32 first = 0x80;
  static constexpr UChar32 end = 0x250;
  std::vector<icu::UnicodeString> plain_;
};

/// Accents, but not the marks that make other sounds of the signs of kana, nor the vowels of other scripts.
bool isAccent(UChar32 value) {
  UErrorCode code = U_ZERO_ERROR;
  const bool ofKana = value == 0x3099 || value == 0x309a;
  return u_charType(value) == U_NON_SPACING_MARK && !ofKana &&
         uscript_getScript(value, &code) == USCRIPT_INHERITED;
}

/// Most texts have no other characters.
std::string smallAscii(std::string_view text) {
  std::string small(text);
  for (char& c : small) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return small;
}

constexpr UChar32 notUtf8 = 0xfffd;

}  // namespace

std::string foldText(std::string_view text) {
  if (std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
    return smallAscii(text);
  static const PlainLetters plainLetters;
  UErrorCode code = U_ZERO_ERROR;
  const icu::Normalizer2* fold = icu::Normalizer2::getNFKCCasefoldInstance(code);
  const icu::Normalizer2* decompose = icu::Normalizer2::getNFDInstance(code);
  const icu::Normalizer2* compose = icu::Normalizer2::getNFCInstance(code);
  require(code);
  const auto whole = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
  const icu::UnicodeString apart = decompose->normalize(fold->normalize(whole, code), code);
  icu::UnicodeString plain;
  for (std::int32_t at = 0; at < apart.length(); at = apart.moveIndex32(at, 1)) {
    const UChar32 value = apart.char32At(at);
    if (value != notUtf8 && !isAccent(value)) plainLetters.append(plain, value);
  }
  const icu::UnicodeString folded = compose->normalize(plain, code);
  require(code);
  std::string result;
  folded.toUTF8String(result);
  return result;
}

}  // namespace vantry::server
