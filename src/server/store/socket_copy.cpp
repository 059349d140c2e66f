#include "server/store/socket_copy.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace vantry::server {

SocketCopy::~SocketCopy() {
  if (copy_ >= 0) close(copy_);
}

void SocketCopy::copy(int socket) {
  copy_ = fcntl(socket, F_DUPFD_CLOEXEC, 0);
}

void SocketCopy::shutDown() const {
  if (copy_ >= 0) shutdown(copy_, SHUT_RDWR);
}

}  // namespace vantry::server
