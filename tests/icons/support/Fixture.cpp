#include "support/Fixture.h"

#include "platform/Platform.h"

#include <fstream>
#include <iterator>

namespace QanTest {

std::filesystem::path FixturePath(const std::string& name) {
    return std::filesystem::path(Framework::Platform::SystemPlatform().ExecutableDirectory()) /
           name;
}

std::vector<std::byte> ReadBytes(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::vector<char> chars((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::vector<std::byte> bytes(chars.size());
    for (std::size_t i = 0; i < chars.size(); ++i)
        bytes[i] = static_cast<std::byte>(chars[i]);
    return bytes;
}

std::vector<std::byte> Bytes(std::span<const std::byte> span) {
    return {span.begin(), span.end()};
}

} // namespace QanTest
