#include "server/store/store_file.h"

#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace vantry::server {

bool StoreFile::exists() const {
  struct stat found {};
  return stat(path_.c_str(), &found) == 0;
}

bool StoreFile::folderExists() const {
  std::error_code unreadable;  // a folder that cannot be looked into is told as missing
  return std::filesystem::is_directory(std::filesystem::absolute(path_).parent_path(), unreadable);
}

void StoreFile::refuseForeignLog() const {
  constexpr std::streamoff placeOfVersion = 60;  // four bytes, the highest first
  std::ifstream file(path_, std::ios::binary);
  std::array<char, 4> bytes{};
  if (!file.seekg(placeOfVersion) || !file.read(bytes.data(), bytes.size())) return;
  std::uint32_t version = 0;
  for (const char each : bytes) version = version << 8U | static_cast<unsigned char>(each);
  std::error_code missing;
  const std::string log = path_ + "-wal";
  const std::uintmax_t size = std::filesystem::file_size(log, missing);
  if (version != versionOfCopies || missing || size == 0) return;
  throw std::runtime_error("The file " + path_ + " is a backup, and " + log +
                           " is the log of an earlier database, which would be written into it. Move " + log +
                           " away first.");
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
