#include "transport/apartment.h"

namespace oxaqrycln {

Apartment::Apartment() : resolver(&ResolveHost), loop(clock), servers(loop), controls(loop, resolver, servers) {}

std::shared_ptr<Apartment> Apartment::Current() {
  thread_local std::shared_ptr<Apartment> current;
  if (current == nullptr) current = std::make_shared<Apartment>();
  return current;
}

}  // namespace oxaqrycln
