// descriptor.h - an open file descriptor that is closed when its owner ends.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_DESCRIPTOR_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_DESCRIPTOR_H_

#include <unistd.h>

#include <utility>

namespace oxaqrycln::devserver {

class Descriptor {
 public:
  explicit Descriptor(int number = -1) noexcept : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }

  int get() const noexcept { return number_; }

 private:
  int number_;
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_DESCRIPTOR_H_
