#include "support/TempDir.h"

#include <atomic>
#include <chrono>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace QanTest {

TempDir::TempDir() {
    static std::atomic<unsigned> counter{0};
    std::random_device random;
    const auto base = std::filesystem::temp_directory_path();
    std::filesystem::create_directories(base);
    // A name is claimed by creating its directory, which fails when the directory exists:
    // tests running side by side never share one, however their names were drawn.
    for (int attempt = 0; attempt < 100; ++attempt) {
        const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
        std::ostringstream name;
        name << "qanres-test-" << random() << '-' << stamp << '-' << counter++;
        path = base / name.str();
        if (std::filesystem::create_directory(path))
            return;
    }
    throw std::runtime_error("no fresh temporary directory under " + base.string());
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::permissions(path, std::filesystem::perms::owner_all,
                                 std::filesystem::perm_options::add, ignored);
    std::filesystem::remove_all(path, ignored);
}

std::filesystem::path TempDir::Write(const std::filesystem::path& relative,
                                     std::string_view bytes) const {
    const auto file = path / relative;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return file;
}

std::string ReadAll(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

} // namespace QanTest
