// server_table.h - the configured query servers of an apartment, and which of them are busy.
// Knows nothing of sockets. One per apartment, shared by all its instances.
#ifndef OXAQRYCLN_TRANSPORT_SERVER_TABLE_H_
#define OXAQRYCLN_TRANSPORT_SERVER_TABLE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/event_loop.h"
#include "platform/net/socket_address.h"
#include "support/log_writer.h"

namespace oxaqrycln {

struct ServerEntry {
  std::string host;
  std::int32_t port = 0;
  bool print = true;     // may take print requests
  std::string user;      // "" = the instance's own account
  std::string password;  // as typed, not encoded
  bool busy = false;
  DateTime since;                        // when it was claimed
  std::string session;                   // who claimed it
  bool sick = false;                     // the last connect to it failed
  std::optional<SocketAddress> address;  // found for its host name; forgotten when a connect fails
};

// How a server is chosen after a connect to it failed: ClaimedInOrder claims the first free server of the list whatever
// its state, TriedLast claims one whose last connect failed only when no other is free.
enum class SickServers : std::uint8_t { ClaimedInOrder, TriedLast };

class ServerTable {
 public:
  explicit ServerTable(EventLoop& loop) noexcept : loop_(loop) {}

  // Loads the table from "host,port[,print flag[,user[,encoded password]]]" entries joined by "|". Once loaded it stays
  // as it is. Raises Type mismatch or Overflow for a port that is no number; the table is then still not loaded.
  void Load(std::string_view hosts, const SessionLog& log);

  // Claims the first free server, or 0 when there is none; print requests go to servers with the print flag only.
  // busyReport, when given, receives a line for each busy server passed over. Yields after each server passed over.
  std::int16_t GetFreeServer(bool printOnly, std::string_view sessionId, std::string* busyReport = nullptr);
  void SetSickServers(SickServers policy) noexcept { sickServers_ = policy; }
  // Frees the first server that has been busy for more than five minute boundaries: its number, or 0.
  std::int16_t CheckReleaseBusyServer();
  void Release(std::int16_t number) { At(number).busy = false; }

  std::int32_t Count() const noexcept { return static_cast<std::int32_t>(entries_.size()); }
  // The server of that number, counted from 1. Raises Subscript out of range.
  ServerEntry& At(std::int32_t number);

 private:
  std::int16_t Claim(bool printOnly, bool sickToo, std::string_view sessionId, std::string* busyReport);

  EventLoop& loop_;
  std::vector<ServerEntry> entries_;
  bool isSet_ = false;
  SickServers sickServers_ = SickServers::ClaimedInOrder;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TRANSPORT_SERVER_TABLE_H_
