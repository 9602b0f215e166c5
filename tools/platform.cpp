#include "platform.hpp"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <sys/types.h>
#include <unistd.h>

#include <cstdlib>
#include <limits>
#include <string_view>
#endif

namespace tool {

#ifdef _WIN32

std::FILE *openFile(const std::filesystem::path &path) { return _wfopen(path.c_str(), L"rb"); }

bool seekForward(std::FILE *file, uint64_t size) {
  return size <= INT64_MAX && _fseeki64(file, static_cast<int64_t>(size), SEEK_CUR) == 0;
}

void makeStreamsBinary() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
}

bool isTerminal(std::FILE *stream) { return _isatty(_fileno(stream)) != 0; }

bool hasColours(std::FILE *stream) {
  if (!isTerminal(stream)) return false;
  const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
  constexpr DWORD kUnderstandsSequences = 0x0004;  // ENABLE_VIRTUAL_TERMINAL_PROCESSING
  DWORD mode = 0;
  return GetConsoleMode(console, &mode) != 0 && SetConsoleMode(console, mode | kUnderstandsSequences) != 0;
}

#else

std::FILE *openFile(const std::filesystem::path &path) { return std::fopen(path.c_str(), "rbe"); }

bool seekForward(std::FILE *file, uint64_t size) {
  return size <= std::numeric_limits<off_t>::max() && fseeko(file, static_cast<off_t>(size), SEEK_CUR) == 0;
}

void makeStreamsBinary() {}

bool isTerminal(std::FILE *stream) { return isatty(fileno(stream)) != 0; }

bool hasColours(std::FILE *stream) {
  const char *kind = std::getenv("TERM");
  return isTerminal(stream) && kind != nullptr && std::string_view(kind) != "dumb";
}

#endif

}  // namespace tool
