// The ways in which the other side of a connection ends it.
#pragma once

#include <QTcpSocket>
#include <sys/socket.h>

/// The ways in which the other side of a connection ends it.
enum class End {
  Reset,      ///< at once; what is under way is lost
  Close,      ///< in order, behind what was written; nobody listens any more
  HalfClose,  ///< in order, but the other side still listens
};

/// What was written before has left the socket, unless nobody reads it.
inline void endConnection(QTcpSocket& socket, End end) {
  socket.flush();
  const int descriptor = static_cast<int>(socket.socketDescriptor());
  switch (end) {
    case End::Reset: {
      const linger atOnce{1, 0};
      ::setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
      socket.abort();
      break;
    }
    case End::Close:
      socket.disconnectFromHost();
      break;
    case End::HalfClose:
      ::shutdown(descriptor, SHUT_WR);
      break;
  }
}
