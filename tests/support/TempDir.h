// TempDir.h: a fresh directory per test, removed with everything in it afterwards.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace QanTest {

class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& Path() const { return path; }
    // The directory as the library's settings take it.
    std::wstring Wide() const { return path.wstring(); }
    // Writes bytes to a file under the directory (creating folders) and returns its path.
    std::filesystem::path Write(const std::filesystem::path& relative,
                                std::string_view bytes) const;

private:
    std::filesystem::path path;
};

// Reads a whole file as bytes.
std::string ReadAll(const std::filesystem::path& file);

} // namespace QanTest
