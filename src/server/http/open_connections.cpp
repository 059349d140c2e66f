#include "server/http/open_connections.h"

namespace vantry::server {

bool OpenConnections::add(const std::shared_ptr<HttpConnection>& connection, const std::string& client,
                          const Most& most) {
  const std::lock_guard lock(mutex_);
  if (open_.size() >= most.inAll) return false;
  Count& count = perClient_[client];
  if (count.open >= most.ofClient || count.beginning >= most.beginningOfClient) return false;
  ++count.open;
  ++count.beginning;
  open_[connection.get()] = {connection, client};
  return true;
}

void OpenConnections::settled(const HttpConnection* connection) {
  const std::lock_guard lock(mutex_);
  const auto found = open_.find(connection);
  if (found == open_.end() || found->second.isSettled) return;
  found->second.isSettled = true;
  --perClient_[found->second.client].beginning;
}

void OpenConnections::remove(const HttpConnection* connection) {
  {
    const std::lock_guard lock(mutex_);
    const auto found = open_.find(connection);
    if (found == open_.end()) return;
    const auto counted = perClient_.find(found->second.client);
    if (!found->second.isSettled) --counted->second.beginning;
    if (--counted->second.open == 0) perClient_.erase(counted);
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
