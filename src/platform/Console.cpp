// Console.cpp: UTF-8 arguments and binary standard streams. The stream mode is the C
// runtime's on Windows; elsewhere streams never translate.
#include "platform/Console.h"

#include "base/Unicode.h"

#ifdef _WIN32
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#endif

namespace Framework::Platform {

void UseBinaryStandardStreams() {
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
#endif
}

template <>
std::vector<std::string> Utf8Arguments(int argc, char** argv) {
    return std::vector<std::string>(argv, argv + argc);
}

template <>
std::vector<std::string> Utf8Arguments(int argc, wchar_t** argv) {
    std::vector<std::string> arguments;
    for (int i = 0; i < argc; ++i)
        arguments.push_back(Utf8::Encode(argv[i]));
    return arguments;
}

} // namespace Framework::Platform
