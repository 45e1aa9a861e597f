// Free functions over the C library's zone and breakdown functions.
//
// The module calls tzset once per process, before its first use of the local
// zone; every function here that needs the zone does that first.
#pragma once

#include <time.h>

// Calls tzset the first time any thread gets here; later calls do nothing.
// Two threads arriving together may both call it, which tzset tolerates.
void zp_tzset();

// localtime_r(t, out) after the zone initialisation. A null `t` or `out`
// does nothing at all, not even the initialisation.
void zp_localtime_r(const long* t, tm* out);

// gmtime_r(count, out) with the count as 64 bits; false where gmtime_r
// fails (years a tm cannot hold). Within 2^40 s of 1970 (some 34,000 years)
// the fields come from calendar arithmetic, gmtime_r's exactly, tm_yday,
// tm_zone and tm_gmtoff included.
bool zp_gmtime(long long count, tm& out);

// mktime after the zone initialisation; `t` is normalised in place.
time_t zp_mktime(tm* t);
long long zp_mktime64(tm* t);

// Local seconds of the GMT count `t`: t plus the zone's offset at that
// instant. A count the C library cannot break down comes back unchanged.
long gmtUnixToLocalUnix(long t);

// Seconds since the epoch of a broken-down UTC time by POSIX's formula, from
// tm_year, tm_yday and the time of day alone (tm_mon and tm_mday are not
// read, no range is checked). A year before 1970 is reported to
// Psdk::badObjectFound and gives -1. `t` must not be null.
long long tm_to_unixTime64(const tm* t);
