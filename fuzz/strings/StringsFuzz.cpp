// StringsFuzz.cpp: any bytes as a string text file, a key table and stored texts. The
// scans must keep every row inside the file and obey their grammar, and the text file's scan
// fed in pieces (as a read brings them in) must keep the rows and the end of the whole; every
// text found must decode; merging a table with itself must keep its rows.
#include "platform/Platform.h"
#include "strings/CsvKeyTable.h"
#include "strings/DecodeStringText.h"
#include "strings/FindInTable.h"
#include "strings/MergeOverrides.h"
#include "strings/XmlStringTable.h"

#include <cstdlib>
#include <cstring>

namespace {
using namespace Framework::Internal;

// The one file of this platform: the current fuzz input.
class InputPlatform final : public Framework::Platform::IPlatform {
public:
    const std::uint8_t* data = nullptr;
    std::size_t size = 0;

    std::unique_ptr<char[]> ReadFileInfoBuffer(const wchar_t*,
                                               std::uint64_t& length) const override {
        std::unique_ptr<char[]> buffer(new char[size]);
        if (size)
            std::memcpy(buffer.get(), data, size);
        length = size;
        return buffer;
    }
    bool Exists(const QanStringT<wchar_t>&) const override { return true; }
    bool IsFile(const QanStringT<wchar_t>&) const override { return true; }
    bool IsFolder(const QanStringT<wchar_t>&) const override { return false; }
    QanStringT<wchar_t> ExecutableDirectory() const override { return {}; }
    HINSTANCE LoadModule(const wchar_t*) const override { return nullptr; }
    void FreeModule(HINSTANCE) const override {}
    std::span<const std::byte> FindRawDataResource(HINSTANCE, int) const override { return {}; }
    bool GetStockIconLocation(int, Framework::Platform::StockIconLocation&) const override {
        return false;
    }
    int CopyWide(wchar_t*, std::int64_t, const wchar_t*) const override { return 22; }
};

InputPlatform input;

void Check(bool condition) {
    if (!condition)
        std::abort();
}

bool Inside(const StringTable& table, std::size_t size, QanStringViewT<char> view) {
    const char* begin = table.buffer.get();
    return view.data() >= begin && view.data() + view.size() <= begin + size;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Framework::Platform::SetPlatformForTests(&input);
    input.data = data;
    input.size = size;

    StringTable texts;
    LoadXmlStringTable(texts, L"strings.xml", size % 2 == 0);
    for (const auto& row : texts.entries) {
        Check(Inside(texts, size, row.key) && Inside(texts, size, row.text));
        Check(row.key.find('"') == QanStringViewT<char>::npos);
        Check(row.text.find('<') == QanStringViewT<char>::npos);
        Check(FindInTable(texts, row.key).has_value() || size % 2 != 0);
        (void)DecodeStringText(row.text);
    }

    // In pieces: a split taken from the bytes themselves, then a byte at a time.
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const StringFileScan whole = ScanStringTextFile(bytes);
    StringFileScanner scanner(size);
    const std::size_t split = size > 0 ? data[0] % (size + 1) : 0;
    scanner.Feed(bytes.substr(0, split));
    for (std::size_t fed = split; fed < size;)
        scanner.Feed(bytes.substr(0, ++fed));
    const StringFileScan pieced = scanner.Finish();
    Check(pieced.end == whole.end && pieced.endOffset == whole.endOffset &&
          pieced.rowsBegin == whole.rowsBegin && pieced.rows.size() == whole.rows.size());
    for (std::size_t i = 0; i < whole.rows.size(); ++i)
        Check(pieced.rows[i].key == whole.rows[i].key && pieced.rows[i].text == whole.rows[i].text);

    StringTable keys;
    LoadCsvKeyTable(keys, L"string.csv");
    for (const auto& row : keys.entries) {
        Check(Inside(keys, size, row.key) && Inside(keys, size, row.text));
        Check(row.key.find(',') == QanStringViewT<char>::npos);
        Check(row.text.find('\n') == QanStringViewT<char>::npos);
    }

    // Overrides laid over a table loaded from the same bytes change no row count.
    StringTable overrides;
    LoadXmlStringTable(overrides, L"override/strings.xml", true);
    const std::size_t rows = texts.entries.size();
    MergeOverrides(texts, overrides);
    Check(texts.entries.size() == rows);

    (void)DecodeStringText(QanStringViewT<char>(reinterpret_cast<const char*>(data), size));
    return 0;
}
