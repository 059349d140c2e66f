#include "server/http/open_connections.h"

namespace vantry::server {

bool OpenConnections::add(const std::shared_ptr<HttpConnection>& connection, const std::string& client,
                          std::size_t mostOfClient, std::size_t mostInAll) {
  const std::lock_guard lock(mutex_);
  if (open_.size() >= mostInAll) return false;
  const auto counted = perClient_.find(client);
  if (counted != perClient_.end() && counted->second >= mostOfClient) return false;
  ++perClient_[client];
  open_[connection.get()] = {connection, client};
  return true;
}

void OpenConnections::remove(const HttpConnection* connection) {
  {
    const std::lock_guard lock(mutex_);
    const auto found = open_.find(connection);
    if (found == open_.end()) return;
    const auto counted = perClient_.find(found->second.client);
    if (--counted->second == 0) perClient_.erase(counted);
    open_.erase(found);
  }
  removed_.notify_all();
}

std::vector<std::shared_ptr<HttpConnection>> OpenConnections::all() const {
  std::vector<std::shared_ptr<HttpConnection>> result;
  const std::lock_guard lock(mutex_);
  result.reserve(open_.size());
  for (const auto& [key, entry] : open_) {
    if (auto connection = entry.connection.lock()) result.push_back(std::move(connection));
  }
  return result;
}

std::size_t OpenConnections::count() const {
  const std::lock_guard lock(mutex_);
  return open_.size();
}

void OpenConnections::awaitNone(std::chrono::milliseconds longest) const {
  std::unique_lock lock(mutex_);
  removed_.wait_for(lock, longest, [this] { return open_.empty(); });
}

}  // namespace vantry::server
