// send_source.h - bytes to be sent that are fetched piece by piece, as the network takes them.
#ifndef OXAQRYCLN_PLATFORM_NET_SEND_SOURCE_H_
#define OXAQRYCLN_PLATFORM_NET_SEND_SOURCE_H_

#include <string_view>

namespace oxaqrycln {

class SendSource {
 public:
  virtual ~SendSource() = default;
  // The next bytes, valid until the next call; none at the end. An error it raises ends the request.
  virtual std::string_view NextPiece() = 0;

 protected:
  SendSource() = default;
  SendSource(const SendSource&) = default;
  SendSource& operator=(const SendSource&) = default;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_NET_SEND_SOURCE_H_
