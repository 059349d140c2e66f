#include "server/mail/mail_texts.h"

#include <fstream>

#include <gtest/gtest.h>

#include "support/server_case.h"

namespace vantry::server {
namespace {

class MailTexts : public testing::Test {
 protected:
  UsedText used(const std::string& content) {
    std::ofstream(folder.file("due.txt"), std::ios::binary) << content;
    return usedText(folder.file(""), "due");
  }
  test::TempFolder folder;
};

TEST_F(MailTexts, AreTheLibrarysOrTheBuiltInOnes) {
  EXPECT_TRUE(usedText(folder.file(""), "due").isBuiltIn);
  for (const std::string_view name : mailTextNames()) {
    std::ofstream(mailTextFile(folder.file(""), name)) << textOfFile(builtInText(name));
    const UsedText own = usedText(folder.file(""), name);
    EXPECT_FALSE(own.isBuiltIn);
    EXPECT_THAT(own.faults, testing::IsEmpty());
    EXPECT_EQ(own.text.body, builtInText(name).body);
  }
  EXPECT_EQ(used("\xEF\xBB\xBFSubject: Hi {name}\r\n\r\nBack {today soon}, {}.\r\n").text.subject,
            "Hi {name}");
}

TEST_F(MailTexts, TellWhatIsWrongWithThemAndAreNotUsedThen) {
  const struct {
    std::string content;
    std::string fault;
  } files[] = {
      {"", "it is empty or cannot be read."},
      {"Dear {name}\n", "line 1: it begins with \"Subject: \" and the subject."},
      {"Subject: \n\nHello\n", "line 1: it begins with \"Subject: \" and the subject."},
      {"Subject: Hello\nDear\n", "line 2: an empty line follows the subject."},
      {"Subject: Hello\n\n \n", "it has no body."},
      {"Subject: Hello\n\nDear\n{nmae}\n", "line 4: there is no placeholder {nmae}."},
      {"Subject: H\xE4llo\n\nDear\n", "it is not written in UTF-8."},
      {"Subject: Hello\n\n" + std::string(70'000, 'x'), "it is longer than 64 KiB."},
  };
  for (const auto& each : files) {
    const UsedText text = used(each.content);
    ASSERT_EQ(text.faults.size(), 1U) << each.fault;
    EXPECT_EQ(text.faults.front(), folder.file("due.txt") + ": " + each.fault);
    EXPECT_TRUE(text.isBuiltIn);
  }
}

TEST(FilledTexts, KeepTheSubjectOneLineAndLeaveNoGaps) {
  const MailText text = filledText({"{things}, {number}", "A\n\n{things}\n\n{gone}{number}{\n"},
                                   {{"things", "- a\n- {number}"}, {"number", "7"}});
  EXPECT_EQ(text.subject, "- a - {number}, 7");
  EXPECT_EQ(text.body, "A\n\n- a\n- {number}\n\n{gone}7{\n");
  EXPECT_EQ(filledText({"s", "A\n\n{things}\n\nB\n"}, {{"things", ""}}).body, "A\n\nB\n");
}

}  // namespace
}  // namespace vantry::server
