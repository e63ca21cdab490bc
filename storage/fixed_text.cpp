#include "storage/fixed_text.h"

#include <cstring>

void CopyFixedText(char* field, std::size_t fieldSize, const char* source) {
  if (fieldSize == 0) return;
  std::size_t length = 0;
  if (source != nullptr) {
    while (length + 1 < fieldSize && source[length] != '\0') ++length;
    std::memmove(field, source, length);
  }
  field[length] = '\0';
}

std::size_t FixedTextLength(const char* field, std::size_t fieldSize) {
  const void* end = std::memchr(field, '\0', fieldSize);
  return end ? static_cast<std::size_t>(static_cast<const char*>(end) - field) : fieldSize;
}

bool EqualsIgnoringCase(const char* a, const char* b) {
  for (; *a != '\0' && *b != '\0'; ++a, ++b) {
    if (LowerAscii(*a) != LowerAscii(*b)) return false;
  }
  return *a == *b;
}

bool FixedTextEqualsIgnoringCase(const char* field, std::size_t fieldSize, const char* text) {
  const std::size_t length = FixedTextLength(field, fieldSize);
  for (std::size_t i = 0; i < length; ++i) {
    if (text[i] == '\0' || LowerAscii(field[i]) != LowerAscii(text[i])) return false;
  }
  return text[length] == '\0';
}
