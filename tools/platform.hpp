// What differs between systems.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>

namespace tool {

// For reading octets; null, and errno, when it cannot be opened.
std::FILE *openFile(const std::filesystem::path &path);
// Moves on by `size` octets without reading them; false when the file does not allow that. Its end can be passed.
bool seekForward(std::FILE *file, uint64_t size);
// Standard input and output are octets, also where text would have its lines ended otherwise.
void makeStreamsBinary();

bool isTerminal(std::FILE *stream);
// Whether it is a terminal that takes colours.
bool hasColours(std::FILE *stream);

}  // namespace tool
