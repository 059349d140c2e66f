// The real program under bad clients, its signals, and its place in a system.

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <atomic>
#include <sstream>
#include <thread>

#include <gmock/gmock.h>

#include "server/program/program_case.h"
#include "support/server_raw_line.h"

namespace vantry::server {
namespace {

using test::ProgramTest;
using test::RawLine;
using test::Serving;
using test::WireClient;
using testing::HasSubstr;

class ServingTest : public ProgramTest {
 protected:
  void SetUp() override { makeLibrary(); }
  std::string log(const std::string& name = "log") { return test::contentOf(folder.file(name)); }
  bool awaitLog(const std::string& text) {
    for (int wait = 0; wait < 2000 && log().find(text) == std::string::npos; ++wait) usleep(10'000);
    return log().find(text) != std::string::npos;
  }
  /// The name in the certificate that the server shows.
  std::string nameShown(int port) {
    const std::string command = "openssl s_client -connect 127.0.0.1:" + std::to_string(port) +
                                " < /dev/null 2> /dev/null | openssl x509 -noout -subject > " +
                                folder.file("subject");
    (void)!std::system(command.c_str());
    return log("subject");
  }
};

TEST_F(ServingTest, ClientsThatSayNothingOrDripKeepNobodyWaiting) {
  Serving serving(database, folder.file("log"));
  std::vector<std::unique_ptr<RawLine>> silent;
  for (int each = 0; each < 400; ++each) silent.push_back(std::make_unique<RawLine>(serving.port()));
  std::vector<std::unique_ptr<RawLine>> dripping;
  for (int each = 0; each < 100; ++each) {
    dripping.push_back(std::make_unique<RawLine>(serving.port()));
    dripping.back()->send("POST /v1/login HTTP/1.1\r\nContent-Length: 4000\r\n\r\n");
  }
  WireClient client(serving.port());
  for (int round = 0; round < 20; ++round) {
    for (auto& each : dripping) each->send("{");
    EXPECT_EQ(client.get("/v1/health").status, 200);
  }
  EXPECT_EQ(client.login("dana", "a-good-password").status, 200);
  EXPECT_EQ(client.send("GETLOCS", {}).rc, 0);
}

/// In kilobytes.
long memoryOf(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) return std::stol(line.substr(6));
  }
  return 0;
}

TEST_F(ServingTest, BodiesOfStrangersTakeNoMemory) {
  Serving serving(database, folder.file("log"));
  ASSERT_NE(serving.port(), 0);
  const long before = memoryOf(serving.process());
  std::string body = R"({"tags":[{})";
  while (body.size() < 1'000'000) body += ",{}";
  body += "]}";
  for (int each = 0; each < 60; ++each) {
    RawLine line(serving.port());
    line.send("POST /v1/request/GETLOCS HTTP/1.1\r\nRequest-Id: 1\r\nContent-Length: " +
              std::to_string(body.size()) + "\r\n\r\n");
    line.send(body);
    EXPECT_THAT(line.readUntil("}"), testing::StartsWith("HTTP/1.1 401"));
  }
  EXPECT_LT(memoryOf(serving.process()) - before, 20'000);
}

TEST_F(ServingTest, AHangUpHasTheCertificateReadAgain) {
  makeCertificate(folder, "first");
  makeCertificate(folder, "second");
  Serving serving(database, folder.file("log"),
                  {"--certificate", folder.file("first.pem"), "--key", folder.file("first.key")});
  EXPECT_THAT(nameShown(serving.port()), HasSubstr("first"));
  std::filesystem::rename(folder.file("second.pem"), folder.file("first.pem"));
  serving.send(SIGHUP);
  ASSERT_TRUE(awaitLog("does not fit the certificate"));
  EXPECT_THAT(nameShown(serving.port()), HasSubstr("first"));
  std::filesystem::rename(folder.file("second.key"), folder.file("first.key"));
  serving.send(SIGHUP);
  ASSERT_TRUE(awaitLog("read again"));
  EXPECT_THAT(nameShown(serving.port()), HasSubstr("second"));
  std::ofstream(folder.file("first.pem")) << "no certificate";
  serving.send(SIGHUP);
  ASSERT_TRUE(awaitLog("holds no certificate"));
  EXPECT_THAT(nameShown(serving.port()), HasSubstr("second"));
}

TEST_F(ServingTest, AServerWhoseKeyDoesNotFitDoesNotStartAndTheDoctorTellsIt) {
  makeCertificate(folder, "mine");
  makeCertificate(folder, "yours");
  const std::string sentence = "The key \"" + folder.file("yours.key") +
                               "\" does not fit the certificate \"" + folder.file("mine.pem") + "\".\n";
  EXPECT_EQ(
      run("serve --port 0 --certificate " + folder.file("mine.pem") + " --key " + folder.file("yours.key"))
          .endedWith(1),
      "vantry-server: " + sentence);
  const std::string config = folder.file("server.conf");
  const auto settings = [&](const std::string& key) {
    std::ofstream(config) << "[serve]\ncertificate = \"" << folder.file("mine.pem") << "\"\nkey = \""
                          << folder.file(key) << "\"\n";
  };
  settings("yours.key");
  EXPECT_THAT(run("--config " + config + " doctor").text, HasSubstr(sentence));
  settings("mine.key");
  EXPECT_THAT(run("--config " + config + " doctor").text,
              HasSubstr("The certificate \"" + folder.file("mine.pem") + "\" ends on "))
      << "in two days";
}

TEST_F(ServingTest, WithoutThreadsForItsWorkItEndsWithASentence) {
  ASSERT_EQ(std::system(("chmod -R a+rwX " + folder.file("")).c_str()), 0);
  const pid_t child = fork();
  if (child == 0) {
    const int out = open(folder.file("log").c_str(), O_CREAT | O_WRONLY, 0666);
    dup2(out, STDERR_FILENO);
    // The limit holds for a user, and not for root.
    if (geteuid() == 0 && setuid(61234) != 0) _exit(8);
    const rlimit few{3, 3};
    setrlimit(RLIMIT_NPROC, &few);
    execl(VANTRY_SERVER_PROGRAM, "vantry-server", "--database", database.c_str(), "serve", "--port", "0",
          nullptr);
    _exit(9);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 1);
  EXPECT_THAT(log(), HasSubstr("The system does not allow this server 8 threads"));
}

TEST_F(ServingTest, TheDemoIsServedToOthersOnlyWhenToldSo) {
  database = folder.file("demo.sqlite");
  ASSERT_EQ(run("demo").code, 0);
  EXPECT_THAT(run("serve --behind-proxy --address 0.0.0.0 --port 0").text,
              HasSubstr("everybody knows its passwords"));
  Serving told(database, folder.file("log"), {"--behind-proxy", "--address", "0.0.0.0", "--demo-is-fine"});
  EXPECT_NE(told.port(), 0);
}

TEST_F(ServingTest, WhatItWritesIsForItsUserAlone) {
  Serving serving(database, folder.file("log"));
  ASSERT_NE(serving.port(), 0);
  ASSERT_EQ(run("backup " + folder.file("copy.sqlite")).code, 0);
  for (const std::string& each : {database, database + "-wal", folder.file("copy.sqlite")}) {
    struct stat found {};
    ASSERT_EQ(stat(each.c_str(), &found), 0) << each;
    EXPECT_EQ(found.st_mode & 0777U, 0600U) << each;
  }
}

TEST_F(ServingTest, TellsTheSystemThatItIsReadyAndWhoeverAsksHowItDoes) {
  const int notices = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  folder.file("notices").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(notices, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  setenv("NOTIFY_SOCKET", folder.file("notices").c_str(), 1);
  Serving serving(database, folder.file("log"));
  unsetenv("NOTIFY_SOCKET");
  char notice[64] = {};
  ASSERT_GT(recv(notices, notice, sizeof notice - 1, 0), 0);
  EXPECT_EQ(std::string(notice), "READY=1");
  close(notices);
  WireClient client(serving.port());
  EXPECT_EQ(client.get("/v1/ready").status, 200);
  EXPECT_EQ(client.login("dana", "wrong").status, 401);
  EXPECT_EQ(client.login("dana", "a-good-password").status, 200);
  EXPECT_EQ(client.send("GETLOCS", {}).rc, 0);
  EXPECT_EQ(client.send("GETLOCS", {{"X", "1"}}).rc, -98);
  const std::string metrics = client.get("/metrics").body;
  for (const char* each :
       {"vantry_requests_total{code=\"GETLOCS\",result=\"0\"} 1",
        "vantry_requests_total{code=\"GETLOCS\",result=\"-98\"} 1",
        "vantry_requests_total{code=\"login\",result=\"401\"} 1", "vantry_logon_tries_refused_total 1",
        "vantry_connections 1", "vantry_waiting_requests{workers=\"requests\"} 0",
        "vantry_request_seconds_bucket{le=\"10\"}"}) {
    EXPECT_THAT(metrics, HasSubstr(each));
  }
  EXPECT_TRUE(awaitLog("127.0.0.1 login: 401 in "));
}

/// The program with a pipe as its log, of which the test reads what it wants to.
class PipedServing {
 public:
  explicit PipedServing(const std::string& database) {
    (void)!pipe2(log_, O_CLOEXEC);
    fcntl(log_[1], F_SETPIPE_SZ, 16'384);
    child_ = fork();
    if (child_ == 0) {
      dup2(log_[1], STDOUT_FILENO);
      execl(VANTRY_SERVER_PROGRAM, "vantry-server", "--database", database.c_str(), "serve", "--port", "0",
            "--log", "debug", nullptr);
      _exit(9);
    }
    close(log_[1]);
  }
  ~PipedServing() {
    if (child_ > 0) kill(child_, SIGKILL);
    if (child_ > 0) waitpid(child_, nullptr, 0);
    close(log_[0]);
  }
  PipedServing(const PipedServing&) = delete;
  PipedServing& operator=(const PipedServing&) = delete;

  /// Reads on until a line has the text; that line, or the last one.
  std::string awaitLine(const std::string& text) {
    std::string line;
    for (char byte = 0; read(log_[0], &byte, 1) == 1;) {
      if (byte != '\n') {
        line += byte;
        continue;
      }
      if (line.find(text) != std::string::npos) break;
      line.clear();
    }
    return line;
  }
  void drain() {
    char part[4096];
    for (pollfd log{.fd = log_[0], .events = POLLIN, .revents = 0}; poll(&log, 1, 0) == 1;)
      (void)!read(log_[0], part, sizeof part);
  }
  int end() {
    int status = -1;
    kill(child_, SIGTERM);
    waitpid(std::exchange(child_, 0), &status, 0);
    return status;
  }

 private:
  int log_[2] = {-1, -1};
  pid_t child_ = 0;
};

TEST_F(ServingTest, ALogThatNobodyReadsHoldsNobodyUp) {
  PipedServing serving(database);
  const std::string line = serving.awaitLine("serving on");
  WireClient client(std::stoi(line.substr(line.rfind(' ') + 1)));
  const auto ask = [&](int times) {
    for (int each = 0; each < times; ++each) ASSERT_EQ(client.get("/v1/health").status, 200);
  };
  constexpr int moreThanFit = 500;
  ask(moreThanFit);
  EXPECT_EQ(client.login("dana", "a-good-password").status, 200);
  serving.drain();
  ask(1);
  EXPECT_THAT(serving.awaitLine("dropped"), HasSubstr(" lines of the log were dropped"));
  ask(moreThanFit);
  EXPECT_EQ(serving.end(), 0);
}

TEST_F(ServingTest, TheAuditIsShownByParts) {
  const auto sql = [&](const std::string& statement) {
    Database(database).write([&](Connection& db) { db.run(statement); });
  };
  sql("delete from audit");
  sql("insert into audit (id, at, operator_id, action, subject, detail) values (1, 1000000000, 1, 'login', "
      "'dana', 'a'), "
      "(2, 1700000000, null, 'login refused', 'eve', 'b'), (3, 1700000001, 1, 'override granted', 'dana', "
      "'c')");
  const auto rowsOf = [&](const std::string& filter) {
    std::istringstream lines(run("audit show " + filter).text);
    std::string last;
    for (std::string line; std::getline(lines, line);) last += line.substr(line.rfind('\t') + 1);
    return last;
  };
  EXPECT_EQ(rowsOf(""), "abc");
  EXPECT_EQ(rowsOf("--since 2020-01-01"), "bc");
  EXPECT_EQ(rowsOf("--before 2020-01-01"), "a");
  EXPECT_EQ(rowsOf("--operator DANA"), "ac");
  EXPECT_EQ(rowsOf("--action 'login refused'"), "b");
  EXPECT_EQ(rowsOf("--subject dana --most 1"), "c");
  EXPECT_THAT(run("audit show --since yesterday").text, HasSubstr("\"yesterday\" is no date."));
  EXPECT_NE(run("audit prune").code, 0);
  EXPECT_EQ(run("audit prune --before 2020-01-01").text, "1 rows of the audit were deleted.\n");
  EXPECT_EQ(rowsOf(""), "bc1 rows") << "and that is in it too";
}

}  // namespace
}  // namespace vantry::server
