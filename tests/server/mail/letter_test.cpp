#include "server/mail/letter.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "server/base/mail_address.h"
#include "server/base/user_error.h"

namespace vantry::server {
namespace {

LetterHead headTo(const std::string& name, const std::string& address) {
  return {.from = senderIn("Booking Desk <desk@library.example>"),
          .toName = name,
          .toAddress = address,
          .id = "one",
          .at = makeMoment(2026, 3, 2, 9)};
}

TEST(MailAddresses, AreOnesThatCannotBecomeAnythingElse) {
  for (const char* good :
       {"ada@example.org", "a.b+c@sub.example.org", "o'neil@example.org", "root@localhost"})
    EXPECT_TRUE(isMailAddress(good)) << good;
  for (const char* bad :
       {"", "ada", "@example.org", "ada@", "ada@b@c", "ada@example.org\nBcc: all@example.org",
        "ada@example.org\r", "ada @example.org", "<ada@example.org>", "ada@example.org,bob@example.org",
        "ada@example.org;bob", "-oQ/tmp@example.org", "\xC3\xA4@example.org", "\"ada\"@example.org"})
    EXPECT_FALSE(isMailAddress(bad)) << bad;
  EXPECT_FALSE(isMailAddress(std::string(251, 'a') + "@b.c"));
}

TEST(MailAddresses, OfTheSenderMayHaveAName) {
  EXPECT_EQ(senderIn("desk@library.example").address, "desk@library.example");
  EXPECT_EQ(senderIn("\"The Desk\" <desk@library.example>").name, "The Desk");
  for (const char* bad : {"", "desk", "Desk <desk>", "Desk <a@b> x", "Desk <a@b\n>"})
    EXPECT_THROW((void)senderIn(bad), UserError) << bad;
}

TEST(Letters, AreAsciiWithWhatEveryMailReaderUnderstands) {
  const std::string text =
      letterText(headTo("J\xC3\xBCrgen \xC3\x85s", "j@example.org"), {"R\xC3\xBC"
                                                                      "ckgabe f\xC3\xA4llig",
                                                                      "Gr\xC3\xBC\xC3\x9F"
                                                                      "e = 1\n.\nEnde\n"});
  EXPECT_TRUE(std::ranges::all_of(text, [](char sign) { return static_cast<unsigned char>(sign) < 0x80; }));
  for (const char* part :
       {"From: Booking Desk <desk@library.example>\r\n", "<j@example.org>\r\n", "Subject: =?UTF-8?",
        "Message-Id: <one@library.example>\r\n", "Date: Mon, 02 Mar 2026 09:00:00 ",
        "Content-Transfer-Encoding: quoted-printable\r\n", "charset=utf-8",
        "Auto-Submitted: auto-generated\r\n", "\r\n\r\nGr=C3=BC=C3=9Fe =3D 1\r\n"})
    EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
}

TEST(Letters, TakeNoHeaderOutOfTheirValues) {
  const std::string text = letterText(headTo("Ada\r\nBcc: all@example.org", "ada@example.org"),
                                      {"Hello\r\nBcc: all@example.org", "Bcc: in the body\n"});
  EXPECT_EQ(text.find("\nBcc: all"), std::string::npos) << text;
  EXPECT_THROW((void)letterText(headTo("Ada", "ada@example.org\nBcc: all@example.org"), {"s", "b"}),
               UserError);
}

}  // namespace
}  // namespace vantry::server
