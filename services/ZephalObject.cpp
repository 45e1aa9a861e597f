#include "services/ZephalObject.h"

#include <atomic>

ZephalObject::~ZephalObject() = default;

std::size_t ZephalObject::heapUsage() const { return 0; }

namespace {
std::atomic<unsigned long> g_badObjectReports{0};
}  // namespace

void Psdk::badObjectFound(char* /*object*/) {
  g_badObjectReports.fetch_add(1, std::memory_order_relaxed);
}

unsigned long Psdk::badObjectCount() {
  return g_badObjectReports.load(std::memory_order_relaxed);
}
