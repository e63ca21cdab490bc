// Shared set-up of the fuzz targets: a scratch folder serves as Windows directory
// and program folder, the clock is fixed, and every input starts from the state
// of a freshly started program.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

#include "storage/session_record.h"

// Program state back to a fresh start; each input makes its own Storage.
void FreshProgramState();
// Writes the bytes to the named file of the scratch folder, replacing it; its path.
std::string WriteInput(const char* name, const uint8_t* data, std::size_t size);
// A broken property: prints it and aborts, which libFuzzer reports with the input.
void Require(bool condition, const char* what);
// The record as the loader must give it: the file's 192 bytes (zero past the
// input's end), with the name field ended inside the record.
SessionRecord ExpectedRecord(const uint8_t* bytes, std::size_t available);
bool SameRecord(const SessionRecord& a, const SessionRecord& b);
