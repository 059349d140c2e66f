#include "server/store/store_file.h"

#include <sys/stat.h>

#include <filesystem>

namespace vantry::server {

bool StoreFile::exists() const {
  struct stat found {};
  return stat(path_.c_str(), &found) == 0;
}

bool StoreFile::folderExists() const {
  std::error_code unreadable;  // a folder that cannot be looked into is told as missing
  return std::filesystem::is_directory(std::filesystem::absolute(path_).parent_path(), unreadable);
}

void StoreFile::remember() {
  struct stat found {};
  if (stat(path_.c_str(), &found) != 0) return;
  device_ = found.st_dev;
  number_ = found.st_ino;
  remembered_ = true;
}

bool StoreFile::isInPlace() const {
  if (!remembered_) return true;
  struct stat found {};
  return stat(path_.c_str(), &found) == 0 && found.st_dev == device_ && found.st_ino == number_;
}

}  // namespace vantry::server
