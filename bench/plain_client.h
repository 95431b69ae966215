// plain_client.h - the limit the component is measured against: a plain blocking connect, send, receive, close.
#ifndef OXAQRYCLN_BENCH_PLAIN_CLIENT_H_
#define OXAQRYCLN_BENCH_PLAIN_CLIENT_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace oxaqrycln::bench {

// Receives byteCount bytes into a buffer that is ready (its pages are there); returns how many came.
std::size_t PlainRequest(std::uint16_t port, std::string_view request, std::span<char> buffer, std::size_t byteCount);

// Receives byteCount bytes into a file through a buffer of 1 MiB; false when that failed.
bool PlainReceiveFile(std::uint16_t port, std::string_view request, const std::string& path, std::size_t byteCount);
// Sends the request and the file through a buffer of 1 MiB and waits for the answer; false when that failed.
bool PlainSendFile(std::uint16_t port, std::string_view request, const std::string& path);

}  // namespace oxaqrycln::bench

#endif  // OXAQRYCLN_BENCH_PLAIN_CLIENT_H_
