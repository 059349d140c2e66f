#include "support/server_files.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vantry::server::test {

std::string contentOf(const std::string& file) {
  std::ifstream bytes(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(bytes), {}};
}

void makeReadOnly(const std::string& file) {
  std::fstream bytes(file, std::ios::in | std::ios::out | std::ios::binary);
  bytes.seekp(18);
  bytes.put(3);
}

std::string told(const std::function<void()>& work) {
  try {
    work();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "nothing";
}

}  // namespace vantry::server::test
