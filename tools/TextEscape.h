// Writing input bytes back out safely: as a JSON string, or quoted for a
// message on a terminal. Input may hold any bytes; both outputs are valid
// UTF-8 and hold no control byte.
#pragma once

#include <cstddef>
#include <string>

namespace zpdate {

// Appends "..." with '"', '\\' and the bytes below 0x20 escaped (\b, \f,
// \n, \r, \t or \u00XX) and each maximal ill-formed UTF-8 sequence as \ufffd, as the
// Unicode standard's substitution practice counts them.
void appendJsonString(const char* text, size_t size, std::string& out);

// Appends the text with each control byte (below 0x20, 0x7F) and each byte
// that is not part of well-formed UTF-8 escaped as C writes it (\t, \ooo),
// and '\\' doubled, as GNU date shows a text it cannot read.
void appendEscaped(const char* text, size_t size, std::string& out);

}  // namespace zpdate
