// PeResources.cpp: the walk from the DOS header to one raw-data resource. All arithmetic
// is done in 64 bits on 32-bit fields, so no sum of file values can wrap.
#include "platform/PeResources.h"

#include <algorithm>
#include <array>
#include <optional>

namespace Framework::Platform {
namespace {

constexpr std::uint32_t kRawDataType = 10;
constexpr std::uint32_t kResourceDirectoryIndex = 2;
constexpr std::uint64_t kDirectoryHeaderSize = 16;
constexpr std::uint64_t kDirectoryEntrySize = 8;
constexpr std::uint64_t kDataEntrySize = 16;
constexpr std::uint64_t kSectionHeaderSize = 40;
constexpr std::uint32_t kHighBit = 0x80000000u;

// Little-endian reads that fail instead of reading past the end.
class Reader {
public:
    explicit Reader(std::span<const std::byte> bytes) : bytes(bytes) {}

    std::uint64_t Size() const { return bytes.size(); }
    bool Fits(std::uint64_t offset, std::uint64_t length) const {
        return offset <= bytes.size() && length <= bytes.size() - offset;
    }
    std::optional<std::uint16_t> U16(std::uint64_t offset) const {
        if (!Fits(offset, 2))
            return std::nullopt;
        return static_cast<std::uint16_t>(Byte(offset) | Byte(offset + 1) << 8);
    }
    std::optional<std::uint32_t> U32(std::uint64_t offset) const {
        if (!Fits(offset, 4))
            return std::nullopt;
        return static_cast<std::uint32_t>(Byte(offset) | Byte(offset + 1) << 8 |
                                          Byte(offset + 2) << 16 | Byte(offset + 3) << 24);
    }
    std::span<const std::byte> Slice(std::uint64_t offset, std::uint64_t length) const {
        return bytes.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(length));
    }

private:
    std::uint32_t Byte(std::uint64_t offset) const {
        return static_cast<std::uint32_t>(bytes[static_cast<std::size_t>(offset)]);
    }
    std::span<const std::byte> bytes;
};

struct Headers {
    std::uint64_t sectionTable = 0;
    std::uint32_t sectionCount = 0;
    std::uint32_t resourceRva = 0;
    std::uint32_t resourceSize = 0;
};

std::optional<Headers> ReadHeaders(const Reader& file) {
    if (!file.Fits(0, 64) || file.U16(0) != 0x5A4D) // "MZ"
        return std::nullopt;
    const std::uint64_t pe = *file.U32(0x3C);
    if (file.U32(pe) != 0x00004550u) // "PE\0\0"
        return std::nullopt;
    const std::uint64_t fileHeader = pe + 4;
    if (!file.Fits(fileHeader, 20))
        return std::nullopt;
    const std::uint16_t sectionCount = *file.U16(fileHeader + 2);
    const std::uint16_t optionalSize = *file.U16(fileHeader + 16);
    const std::uint64_t optional = fileHeader + 20;
    if (!file.Fits(optional, optionalSize))
        return std::nullopt;

    std::uint64_t countOffset = 0;
    switch (file.U16(optional).value_or(0)) {
    case 0x10B: // PE32
        countOffset = 92;
        break;
    case 0x20B: // PE32+
        countOffset = 108;
        break;
    default:
        return std::nullopt;
    }
    Headers headers;
    headers.sectionTable = optional + optionalSize;
    headers.sectionCount = sectionCount;
    // The data directories follow their count; only those inside the optional header
    // as its size declares it exist.
    if (countOffset + 4 <= optionalSize) {
        const std::uint32_t directoryCount = *file.U32(optional + countOffset);
        const std::uint64_t entry = countOffset + 4 + kResourceDirectoryIndex * 8;
        if (directoryCount > kResourceDirectoryIndex && entry + 8 <= optionalSize) {
            headers.resourceRva = *file.U32(optional + entry);
            headers.resourceSize = *file.U32(optional + entry + 4);
        }
    }
    return headers;
}

// A run of file bytes that backs a range of relative virtual addresses.
struct Mapped {
    std::uint64_t offset = 0;
    std::uint64_t available = 0; // bytes from offset that are both in the section and the file
};

std::optional<Mapped> MapRva(const Reader& file, const Headers& headers, std::uint32_t rva) {
    for (std::uint32_t i = 0; i < headers.sectionCount; ++i) {
        const std::uint64_t section = headers.sectionTable + i * kSectionHeaderSize;
        if (!file.Fits(section, kSectionHeaderSize))
            return std::nullopt; // the table runs off the file: no later section exists
        const std::uint32_t address = *file.U32(section + 12);
        const std::uint32_t rawSize = *file.U32(section + 16);
        const std::uint32_t rawOffset = *file.U32(section + 20);
        if (rva < address || std::uint64_t{rva} - address >= rawSize)
            continue;
        const std::uint64_t delta = std::uint64_t{rva} - address;
        const std::uint64_t offset = std::uint64_t{rawOffset} + delta;
        if (offset >= file.Size())
            return std::nullopt;
        const std::uint64_t inSection = rawSize - delta;
        return Mapped{offset, std::min(inSection, file.Size() - offset)};
    }
    return std::nullopt;
}

// The resource directory tree: offsets are relative to its start and must stay inside
// the bytes the data directory gives it (clipped to the file).
class ResourceTree {
public:
    ResourceTree(const Reader& file, std::uint64_t base, std::uint64_t size)
        : file(file), base(base), size(size) {}

    // The OffsetToData field of the entry of the directory at offset whose name is the
    // integer id; named entries are skipped. Absent when not found or malformed.
    std::optional<std::uint32_t> FindById(std::uint64_t directory, std::uint32_t id) const {
        const auto count = EntryCount(directory);
        for (std::uint64_t i = 0; i < count; ++i) {
            const std::uint64_t entry =
                base + directory + kDirectoryHeaderSize + i * kDirectoryEntrySize;
            if (*file.U32(entry) == id)
                return *file.U32(entry + 4);
        }
        return std::nullopt;
    }
    // The OffsetToData field of the first entry, named or not.
    std::optional<std::uint32_t> First(std::uint64_t directory) const {
        if (EntryCount(directory) == 0)
            return std::nullopt;
        return *file.U32(base + directory + kDirectoryHeaderSize + 4);
    }
    bool Holds(std::uint64_t offset, std::uint64_t length) const {
        return offset <= size && length <= size - offset;
    }

private:
    // The declared count, capped by the whole entries that fit in the tree's bytes.
    std::uint64_t EntryCount(std::uint64_t directory) const {
        if (!Holds(directory, kDirectoryHeaderSize))
            return 0;
        const std::uint64_t declared =
            std::uint64_t{*file.U16(base + directory + 12)} + *file.U16(base + directory + 14);
        const std::uint64_t room = (size - directory - kDirectoryHeaderSize) / kDirectoryEntrySize;
        return std::min(declared, room);
    }

    const Reader& file;
    std::uint64_t base;
    std::uint64_t size;
};

} // namespace

bool IsPeImage(std::span<const std::byte> bytes) {
    return ReadHeaders(Reader(bytes)).has_value();
}

std::span<const std::byte> FindPeRawData(std::span<const std::byte> bytes, std::uint32_t id) {
    const Reader file(bytes);
    const auto headers = ReadHeaders(file);
    if (!headers || headers->resourceRva == 0 || headers->resourceSize == 0)
        return {};
    const auto root = MapRva(file, *headers, headers->resourceRva);
    if (!root)
        return {};
    const ResourceTree tree(file, root->offset,
                            std::min<std::uint64_t>(headers->resourceSize, root->available));

    // Type, name, language: exactly three levels, each a subdirectory of the one before
    // except the last, which must name a data entry. A child that points back at a
    // directory already visited is a loop and ends the walk.
    std::array<std::uint64_t, 3> visited{0, 0, 0};
    std::size_t depth = 1;
    auto descend = [&](std::optional<std::uint32_t> field) -> std::optional<std::uint64_t> {
        if (!field || !(*field & kHighBit))
            return std::nullopt;
        const std::uint64_t child = *field & ~kHighBit;
        if (std::find(visited.begin(), visited.begin() + depth, child) != visited.begin() + depth)
            return std::nullopt;
        visited[depth++] = child;
        return child;
    };
    const auto names = descend(tree.FindById(0, kRawDataType));
    if (!names)
        return {};
    const auto languages = descend(tree.FindById(*names, id));
    if (!languages)
        return {};
    const auto dataField = tree.First(*languages);
    if (!dataField || (*dataField & kHighBit))
        return {};
    const std::uint64_t dataEntry = *dataField;
    if (!tree.Holds(dataEntry, kDataEntrySize))
        return {};
    const std::uint64_t entryAt = root->offset + dataEntry;
    const std::uint32_t dataRva = *file.U32(entryAt);
    const std::uint32_t dataSize = *file.U32(entryAt + 4);
    if (dataSize == 0)
        return {};
    const auto data = MapRva(file, *headers, dataRva);
    if (!data || dataSize > data->available)
        return {};
    return file.Slice(data->offset, dataSize);
}

} // namespace Framework::Platform
