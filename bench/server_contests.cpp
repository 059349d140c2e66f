// Two desks of two processes that want one thing at the same moment, by every path, many times. It measures
// nothing: it looks for the round that ends with two bookings of one thing, or in a way that no order
// explains.
//
//   server_contests [--rounds NUMBER] [sqlite|postgresql]...
//
// 10,000 rounds of each path without a number. "postgresql" needs the address of a server where a schema may
// be made in VANTRY_TEST_POSTGRESQL.

#include <pthread.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "failures.h"
#include "support/server_contests.h"

namespace {

using namespace vantry::server;

/// What the two processes share. A round begins and ends at the barrier.
struct Shared {
  pthread_barrier_t barrier;
  bool ends = false;
  int code = 0;
  char text[3][1024] = {};  ///< code, tags and login of the message
  char id[64] = {};

  void write(const DeskMessage& message, const std::string& requestId) {
    const std::string* parts[] = {&message.code, &message.tags, &message.login};
    for (int part = 0; part < 3; ++part) {
      if (parts[part]->size() >= sizeof text[part]) throw std::length_error("a message is too long");
      std::strcpy(text[part], parts[part]->c_str());
    }
    std::strcpy(id, requestId.c_str());
  }
};

Shared& makeShared() {
  void* memory = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  auto& shared = *new (memory) Shared;
  pthread_barrierattr_t attributes;
  pthread_barrierattr_init(&attributes);
  pthread_barrierattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
  pthread_barrier_init(&shared.barrier, &attributes, 2);
  return shared;
}

constexpr int noAnswer = -1000;

/// Whatever fails is told as a code, so that the other process does not wait for it.
int codeOf(DeskLibrary& library, RequestRunner& runner, const std::string& id, const DeskMessage& message) {
  try {
    return library.sendWithId(runner, id, message.code, message.tags, message.login).rc;
  } catch (const std::exception& error) {
    std::printf("no answer: %s\n", error.what());
    return noAnswer;
  }
}

/// The second process. Its connections are its own.
void serveRounds(DeskLibrary& library, Shared& shared) {
  Database database(library.url());
  RequestRunner runner(database, library.clock(), HashCost::Quick);
  for (;;) {
    pthread_barrier_wait(&shared.barrier);
    if (shared.ends) return;
    shared.code = codeOf(library, runner, shared.id, {shared.text[0], shared.text[1], shared.text[2]});
    pthread_barrier_wait(&shared.barrier);
  }
}

class SecondProcess {
 public:
  explicit SecondProcess(DeskLibrary& library) : library_(library), shared_(makeShared()), child_(fork()) {
    if (child_ != 0) return;
    serveRounds(library_, shared_);
    std::fflush(stdout);
    _exit(0);
  }
  ~SecondProcess() {
    shared_.ends = true;
    pthread_barrier_wait(&shared_.barrier);
    waitpid(child_, nullptr, 0);
  }
  SecondProcess(const SecondProcess&) = delete;
  SecondProcess& operator=(const SecondProcess&) = delete;

  std::array<int, 2> sendBoth(const std::array<DeskMessage, 2>& sent) {
    const std::string number = std::to_string(++count_);
    const auto idOf = [&](std::size_t desk, const char* prefix) {
      return sent[desk].id.empty() ? prefix + number : sent[desk].id;
    };
    shared_.write(sent[1], idOf(1, "second "));
    pthread_barrier_wait(&shared_.barrier);
    const int code = codeOf(library_, library_.runner(), idOf(0, "first "), sent[0]);
    pthread_barrier_wait(&shared_.barrier);
    return {code, shared_.code};
  }

 private:
  DeskLibrary& library_;
  Shared& shared_;
  pid_t child_;
  int count_ = 0;
};

void playAll(const std::string& kind, int rounds, Failures& failures) {
  DeskLibrary library(kind);
  library.execute("insert into operator_rights (operator_id, location_id, code) values (3, 1, 'BKADD')");
  SecondProcess second(library);
  for (const Contest& contest : contests()) {
    const Played played =
        play(library, contest, rounds, [&](const auto& sent) { return second.sendBoth(sent); });
    std::printf("%s, %s:", kind.c_str(), contest.name.c_str());
    for (const auto& [outcome, count] : played.outcomes) std::printf(" %s in %d;", outcome.c_str(), count);
    std::printf("\n");
    std::fflush(stdout);
    failures.note(contest.name, played.faults.empty());
    for (const std::string& each : played.faults) std::printf("  %s\n", each.c_str());
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> kinds(argv + 1, argv + argc);
  int rounds = 10'000;
  if (kinds.size() > 1 && kinds.front() == "--rounds") {
    rounds = std::stoi(kinds[1]);
    kinds.erase(kinds.begin(), kinds.begin() + 2);
  }
  if (kinds.empty()) kinds.emplace_back("sqlite");
  Failures failures;
  for (const std::string& kind : kinds) playAll(kind, rounds, failures);
  return failures.tell();
}
