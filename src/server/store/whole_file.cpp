#include "server/store/whole_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

namespace vantry::server {

namespace {

void sync(const std::string& path) {
  const int opened = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const bool synced = opened >= 0 && fsync(opened) == 0;
  if (opened >= 0) close(opened);
  if (!synced) throw std::runtime_error("The file " + path + " cannot be written to the disk.");
}

}  // namespace

void writeWhole(const std::string& file, const std::function<void(const std::string& part)>& write) {
  namespace fs = std::filesystem;
  if (fs::exists(file)) throw std::runtime_error("The file " + file + " exists already.");
  const std::string part = file + ".part";
  fs::remove(part);
  try {
    write(part);
    sync(part);
    fs::rename(part, file);
  } catch (...) {
    std::error_code ignored;  // the failure is told
    fs::remove(part, ignored);
    throw;
  }
  sync(fs::absolute(file).parent_path().string());
}

}  // namespace vantry::server
