// The counts of zpdate's numeric options, read whole and strictly: a sign
// only where the count may have one, "0x" only where hexadecimal is offered,
// no white space, no second prefix, nothing after the digits. A count past
// 64 bits saturates, which every range after it refuses.
//
//   readUnsigned("0x01D9E6A1B2C3D4E5", n)  // true
//   readUnsigned("0x0x10", n)              // false
//   readDays(" 5", d)                      // false
#pragma once

namespace zpdate {

// [+-]digits.
bool readSigned(const char* text, long long& out);

// digits, or 0x followed by hexadecimal digits.
bool readUnsigned(const char* text, unsigned long long& out);

// [+-] and a decimal fraction with an optional exponent ("45358.5",
// "-1.25e2"), "nan" and "inf" included, as a double; no hexadecimal float.
bool readDays(const char* text, double& out);

}  // namespace zpdate
