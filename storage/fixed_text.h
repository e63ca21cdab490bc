// Copies text into fixed-width, NUL-terminated fields. Connection names come from
// the dial-up service with up to 256 characters, but each field that stores one is
// narrower; a longer name is cut at the field's width so nothing is written past it.
#pragma once
#include <cstddef>

// Copies at most fieldSize - 1 characters of source and always terminates the field.
// Bytes after the terminator are left as they were: the files keep such old tails.
void CopyFixedText(char* field, std::size_t fieldSize, const char* source);

template <std::size_t N>
inline void CopyFixedText(char (&field)[N], const char* source) {
  CopyFixedText(field, N, source);
}

// Length of a field's text, never reading past the field even when a damaged file
// left it without a terminator.
std::size_t FixedTextLength(const char* field, std::size_t fieldSize);

// The program's one case rule: ASCII letters compare without their case, every
// other byte as it is (names, folders and the View Log choices alike).
inline char LowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }
bool EqualsIgnoringCase(const char* a, const char* b);

// Compares a field's text with a text, ignoring ASCII letter case, without reading
// past the field.
bool FixedTextEqualsIgnoringCase(const char* field, std::size_t fieldSize, const char* text);
