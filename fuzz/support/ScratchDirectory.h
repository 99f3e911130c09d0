// ScratchDirectory.h: a real directory of the fuzz process's own under the system's
// temporary folder, refilled with the parts of each input, for the targets that run the
// tool or the library against real files. Removed when the process ends normally.
#pragma once

#include "SplitInput.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <system_error>
#include <unistd.h>

namespace QanFuzz {

class ScratchDirectory {
public:
    ScratchDirectory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "qanres-fuzz-XXXXXX");
        if (!mkdtemp(pattern.data()))
            std::abort();
        root = pattern;
    }
    ~ScratchDirectory() {
        std::error_code ec;
        std::filesystem::remove_all(root, ec);
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    const std::filesystem::path& Path() const { return root; }

    // Empties the directory and writes every part as its file.
    void Fill(const std::vector<NamedFile>& files) {
        std::error_code ec;
        for (const auto& entry : std::filesystem::directory_iterator(root))
            std::filesystem::remove_all(entry.path(), ec);
        for (const auto& file : files) {
            if (file.name.empty())
                continue;
            const auto path = root / file.name;
            std::filesystem::create_directories(path.parent_path(), ec);
            std::ofstream out(path, std::ios::binary);
            out.write(file.bytes.data(), static_cast<std::streamsize>(file.bytes.size()));
            if (!out.flush())
                std::abort();
        }
    }

    // Every file's bytes, by name relative to the directory.
    std::map<std::string, std::string> Snapshot() const {
        std::map<std::string, std::string> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
            if (!entry.is_regular_file())
                continue;
            std::ifstream in(entry.path(), std::ios::binary);
            files[std::filesystem::relative(entry.path(), root).generic_string()] =
                std::string(std::istreambuf_iterator<char>(in), {});
        }
        return files;
    }

private:
    std::filesystem::path root;
};

} // namespace QanFuzz
