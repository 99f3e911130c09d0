// Fixture.h: the resource libraries built beside the icon tests, and small byte helpers.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace QanTest {

// A fixture library in the test program's own folder, e.g. "QanIcons.dll".
std::filesystem::path FixturePath(const std::string& name);
std::vector<std::byte> ReadBytes(const std::filesystem::path& file);
std::vector<std::byte> Bytes(std::span<const std::byte> span);

} // namespace QanTest
