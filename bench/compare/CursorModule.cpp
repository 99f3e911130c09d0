// CursorModule.cpp: one PE32+ image, one section, a resource tree of type 10 (raw data),
// id 2, one language, pointing at the cursor table.
#include "CursorModule.h"

#include <cstdint>
#include <fstream>
#include <stdexcept>

namespace Compare {
namespace {

class Image {
public:
    std::vector<char> bytes;

    void Put16(std::size_t at, std::uint32_t value) { Put(at, value, 2); }
    void Put32(std::size_t at, std::uint32_t value) { Put(at, value, 4); }

private:
    void Put(std::size_t at, std::uint32_t value, int width) {
        if (bytes.size() < at + static_cast<std::size_t>(width))
            bytes.resize(at + static_cast<std::size_t>(width));
        for (int i = 0; i < width; ++i)
            bytes[at + static_cast<std::size_t>(i)] = static_cast<char>(value >> (8 * i));
    }
};

// Count, then per row: UTF-16 length, UTF-16LE name, id; all little-endian.
std::vector<char> CursorTable(const std::vector<CursorRow>& rows) {
    Image table;
    table.Put32(0, static_cast<std::uint32_t>(rows.size()));
    std::size_t at = 4;
    for (const CursorRow& row : rows) {
        table.Put32(at, static_cast<std::uint32_t>(row.key.size())); // ASCII names
        at += 4;
        for (const char c : row.key) {
            table.Put16(at, static_cast<unsigned char>(c));
            at += 2;
        }
        table.Put32(at, row.id);
        at += 4;
    }
    return table.bytes;
}

} // namespace

void WriteCursorModule(const std::filesystem::path& path, const std::vector<CursorRow>& rows) {
    constexpr std::uint32_t kSectionRva = 0x1000;
    constexpr std::uint32_t kSectionFile = 0x400;
    const std::vector<char> table = CursorTable(rows);

    Image image;
    image.Put16(0, 0x5A4D); // "MZ"
    image.Put32(0x3C, 0x80);
    image.Put32(0x80, 0x4550); // "PE\0\0"
    image.Put16(0x84, 0x8664); // x86-64
    image.Put16(0x86, 1);      // one section
    image.Put16(0x94, 240);    // optional header size
    constexpr std::size_t opt = 0x98;
    image.Put16(opt, 0x20B); // PE32+
    image.Put32(opt + 108, 16);

    // The resource tree: root (type 10) -> id 2 -> language 0x409 -> data entry -> table.
    constexpr std::uint32_t typeDir = 0, idDir = 0x18, languageDir = 0x30, dataEntry = 0x48,
                            data = 0x58;
    const std::size_t tree = kSectionFile;
    image.Put16(tree + typeDir + 14, 1);
    image.Put32(tree + typeDir + 16, 10);
    image.Put32(tree + typeDir + 20, 0x80000000u | idDir);
    image.Put16(tree + idDir + 14, 1);
    image.Put32(tree + idDir + 16, 2);
    image.Put32(tree + idDir + 20, 0x80000000u | languageDir);
    image.Put16(tree + languageDir + 14, 1);
    image.Put32(tree + languageDir + 16, 0x409);
    image.Put32(tree + languageDir + 20, dataEntry);
    image.Put32(tree + dataEntry, kSectionRva + data);
    image.Put32(tree + dataEntry + 4, static_cast<std::uint32_t>(table.size()));
    image.bytes.resize(tree + data);
    image.bytes.insert(image.bytes.end(), table.begin(), table.end());
    const auto sectionSize = static_cast<std::uint32_t>(image.bytes.size() - kSectionFile);

    image.Put32(opt + 128, kSectionRva); // resource directory
    image.Put32(opt + 132, sectionSize);
    const std::size_t section = opt + 240;
    image.Put32(section + 8, sectionSize);
    image.Put32(section + 12, kSectionRva);
    image.Put32(section + 16, sectionSize);
    image.Put32(section + 20, kSectionFile);

    std::ofstream out(path, std::ios::binary);
    out.write(image.bytes.data(), static_cast<std::streamsize>(image.bytes.size()));
    if (!out)
        throw std::runtime_error("cannot write " + path.string());
}

} // namespace Compare
