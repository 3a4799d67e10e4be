#include "endpoint.h"

#include <chrono>

namespace vcbench {

std::unique_ptr<Endpoint> makeRawEndpoint(const Settings& settings, Handler& handler);
std::unique_ptr<Endpoint> makeLibraryEndpoint(const Settings& settings, Handler& handler);

std::unique_ptr<Endpoint> makeEndpoint(const Settings& settings, Handler& handler) {
  return settings.library ? makeLibraryEndpoint(settings, handler)
                          : makeRawEndpoint(settings, handler);
}

std::uint64_t nowNs() {
  return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(
                                        std::chrono::steady_clock::now().time_since_epoch())
                                        .count());
}

}  // namespace vcbench
