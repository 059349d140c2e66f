// Log-on by the house's directory, as the real program is set up for it.

#include <gmock/gmock.h>

#include "server/program/program_case.h"
#include "support/server_slapd.h"

namespace vantry::server::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class DirectoryProgram : public ProgramTest {
 protected:
  void SetUp() override {
    if (!Slapd::isInstalled()) GTEST_SKIP() << "slapd is not installed";
    slapd = std::make_unique<Slapd>();
  }
  Outcome command(const std::string& words, const std::string& input = {}) {
    return runBare("--config " + config + " " + words, input);
  }
  std::unique_ptr<Slapd> slapd;
  const std::string config = folder.file("server.conf");
};

TEST_F(DirectoryProgram, IsSetUpAndLetsOperatorsIn) {
  const DirectorySettings settings = slapd->bySearch();
  const std::string setup = "setup --yes --database " + database + " --login dana --directory ";
  EXPECT_THAT(command(setup + settings.address + " --directory-authority " + settings.authority +
                          " --directory-base " + settings.base + " --directory-account " + settings.account +
                          " --directory-password-file " + settings.passwordFile,
                      "a-good-password\n")
                  .endedWith(0),
              HasSubstr("The directory answers.\n"));
  EXPECT_THAT(command("config").text, HasSubstr("directory-base\t" + settings.base + "\t" + config + "\n"));
  EXPECT_EQ(
      command("operator add all --name Al --by-directory --location 'Main Desk' --rights view").text,
      "The operator \"all\" is added, logs on by the directory and has the rights view at \"Main Desk\".\n");
  EXPECT_THAT(command("operator list").text, HasSubstr("all\tAl\tactive, by directory\tMain Desk: view\n"));
  Serving serving(database, folder.file("log"), {"--config", config});
  WireClient client(serving.port());
  EXPECT_EQ(client.login("all", "house-all").status, 200);
  EXPECT_EQ(client.login("dana", "a-good-password").status, 200);

  EXPECT_THAT(command("setup --yes").text, HasSubstr("Everything is as it was.\nThe directory answers.\n"));
  EXPECT_EQ(command("setup --yes --directory none").code, 0);
  EXPECT_THAT(command("doctor").text, HasSubstr("Operators log on by the directory, and none is set"));
}

TEST_F(DirectoryProgram, TheDoctorTriesItAndMissesALocalOperator) {
  makeLibrary();
  const DirectorySettings settings = slapd->byName();
  std::ofstream(config) << "database = \"" << database << "\"\n";
  EXPECT_THAT(command("operator by-directory dana").text, HasSubstr("No directory is set"));
  std::ofstream(config, std::ios::app)
      << "directory = \"" << settings.address << ' ' << settings.address << "\"\ndirectory-authority = \""
      << settings.authority << "\"\ndirectory-name = \"" << settings.name << "\"\n";
  const char* alone = "Every operator with rights logs on by the directory";
  const char* away = "cannot be asked: Can't contact LDAP server";
  EXPECT_THAT(command("doctor").text, testing::AllOf(Not(HasSubstr(alone)), Not(HasSubstr(away))));
  EXPECT_EQ(command("operator by-directory dana").text,
            "The operator \"dana\" logs on by the directory; their sessions are ended.\n");
  slapd->stop();
  EXPECT_THAT(command("doctor").text, testing::AllOf(HasSubstr(alone), HasSubstr(away)));
  EXPECT_EQ(command("operator password dana", "a-good-password\n").code, 0);
  EXPECT_EQ(command("operator list").text, "dana\tDana D.\tactive\tMain: all\n");
  EXPECT_THAT(command("serve --directory-plain --directory ldap://elsewhere").text,
              HasSubstr("Passwords travel to a directory on this machine without TLS"));
}

}  // namespace
}  // namespace vantry::server::test
