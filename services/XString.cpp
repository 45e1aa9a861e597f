#include "services/XString.h"

// The text is kept as UTF-8 already, so appending is a byte copy.
bool XString::appendUtf8(const char* text) { return m_utf8.append(text); }
