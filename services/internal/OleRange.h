// The OLE Automation date's epoch and the span the module gives it (internal):
// days since 1899-12-30 00:00:00, from 0100-01-01 (-657434.0) to
// 9999-12-31 23:59:59 (2958465.99998...).
#pragma once

#include <cstdint>

#include "services/internal/CivilDays.h"

namespace zpole {

// Unix day of the epoch.
constexpr int64_t kEpochDays = zpcivil::daysFromCivil(1899, 12, 30);
static_assert(kEpochDays == -25569, "1899-12-30 is 25569 days before 1970-01-01");

// OLE days of the first and the last date of the span.
constexpr int64_t kFirstDay = zpcivil::daysFromCivil(100, 1, 1) - kEpochDays;
constexpr int64_t kLastDay = zpcivil::daysFromCivil(9999, 12, 31) - kEpochDays;
static_assert(kFirstDay == -657434 && kLastDay == 2958465, "0100-01-01 and 9999-12-31");

// The span as seconds from the epoch, its last second included.
constexpr int64_t kFirstSecond = kFirstDay * zpcivil::kSecondsPerDay;
constexpr int64_t kLastSecond = (kLastDay + 1) * zpcivil::kSecondsPerDay - 1;

}  // namespace zpole
