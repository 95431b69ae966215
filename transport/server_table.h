// server_table.h - the configured query servers of an apartment, and which of them are busy.
// Knows nothing of sockets. One per apartment, shared by all its instances.
#ifndef OXAQRYCLN_TRANSPORT_SERVER_TABLE_H_
#define OXAQRYCLN_TRANSPORT_SERVER_TABLE_H_

#include <cstdint>
#include <optional>
#include <span>
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
  std::optional<SocketAddress> address;  // found for its host name; forgotten when it may have changed
  std::int32_t failures = 0;             // of its last connects and requests, in a row; 0 when it is healthy
  Clock::SteadyPoint sickUntil{};        // valid with failures; from then on a request may probe it
};

class ServerTable {
 public:
  explicit ServerTable(EventLoop& loop) noexcept : loop_(loop) {}

  // Loads the table from "host,port[,print flag[,user[,encoded password]]]" entries joined by "|". Once loaded it stays
  // as it is. Raises Type mismatch or Overflow for a port that is no number; the table is then still not loaded.
  void Load(std::string_view hosts, const SessionLog& log);

  // Claims the first free server, or 0 when there is none; print requests go to servers with the print flag only.
  // busyReport, when given, receives a line for each busy server passed over. Yields after each server passed over.
  std::int16_t GetFreeServer(bool printOnly, std::string_view sessionId, std::string* busyReport = nullptr);
  // Claims the first free server that is healthy or due for a probe; without one, the free sick server whose probe is
  // due soonest; or 0. Leaves out the numbers in tried. Does not yield.
  std::int16_t GetHealthyServer(bool printOnly, std::string_view sessionId, std::span<const std::int16_t> tried);
  // How many servers GetHealthyServer could claim, one after the other.
  std::int32_t FreeCount(bool printOnly, std::span<const std::int16_t> tried) const;
  // Frees the first server that has been busy for more than five minute boundaries: its number, or 0.
  std::int16_t CheckReleaseBusyServer();
  void Release(std::int16_t number) { At(number).busy = false; }

  // A connect or a request has failed by the server's fault: it is sick for 30 seconds, for twice as long after each
  // further failure in a row, and for five minutes at most. Returns that time.
  Clock::Duration RecordFailure(std::int16_t number);
  // A whole answer has arrived from the server.
  void RecordSuccess(std::int16_t number) { At(number).failures = 0; }

  std::int32_t Count() const noexcept { return static_cast<std::int32_t>(entries_.size()); }
  // The server of that number, counted from 1. Raises Subscript out of range.
  ServerEntry& At(std::int32_t number);

 private:
  std::int16_t Claim(std::int32_t number, std::string_view sessionId);
  bool IsFree(std::int32_t number, bool printOnly, std::span<const std::int16_t> tried) const;

  EventLoop& loop_;
  std::vector<ServerEntry> entries_;
  bool isSet_ = false;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TRANSPORT_SERVER_TABLE_H_
