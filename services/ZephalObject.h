// ZephalObject: the base of the library's value classes, and the library's
// diagnostic hook for values that a step cannot handle.
#pragma once

#include <cstddef>

class ZephalObject {
 public:
  ZephalObject() = default;
  ZephalObject(const ZephalObject&) = default;
  ZephalObject& operator=(const ZephalObject&) = default;
  virtual ~ZephalObject();

  // Bytes the object keeps on the heap beyond its own size; a plain value keeps none.
  virtual std::size_t heapUsage() const;
};

namespace Psdk {

// Reports a value that a step cannot handle, then returns so the caller can
// go on. `object` may name the offending object; the time module passes null.
void badObjectFound(char* object);

// How many reports `badObjectFound` has received so far in this process.
unsigned long badObjectCount();

}  // namespace Psdk
