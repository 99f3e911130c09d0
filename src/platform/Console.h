// Console.h: what the operating system provides to a command-line program of the suite
// beside the library: its arguments as UTF-8 and standard streams that pass bytes as
// they are.
#pragma once

#include <string>
#include <vector>

namespace Framework::Platform {

// Makes standard output and error write bytes unchanged: no line-feed translation on
// Windows, where text mode would turn "\n" into "\r\n". Nothing elsewhere.
void UseBinaryStandardStreams();

// The program's arguments as UTF-8. On Windows the wide arguments of wmain are converted
// (argv is then a wchar_t**); elsewhere the bytes are taken as they are.
template <class Char>
std::vector<std::string> Utf8Arguments(int argc, Char** argv);

} // namespace Framework::Platform
