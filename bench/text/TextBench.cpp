// Speed of the tagged-text getters, merging and menu stripping on texts of resource size,
// the work the service does for every caption and tooltip it answers from a legacy module.
#include <framework/StripMenuText.h>
#include <framework/TextParser.h>

#include <benchmark/benchmark.h>

#include <string>

namespace {
using Framework::TextParser;

const std::wstring kTagged = L"\u0001CT=&Open...\u0001LP=Opens an existing document from "
                             L"disk\u0001TT=Open a document\u0001TH=Open\u0001TG={6F1A}"
                             L"\u0001NV=2024";
const std::wstring kUntagged = L"Opens an existing document from disk\nOpen a document\n&Open";

void Getter(benchmark::State& state, const std::wstring& text,
            bool (*getter)(const wchar_t*, QanStringT<wchar_t>&)) {
    std::wstring out;
    for (auto _ : state) {
        benchmark::DoNotOptimize(getter(text.c_str(), out));
        benchmark::DoNotOptimize(out.data());
    }
}
BENCHMARK_CAPTURE(Getter, CaptionTagged, kTagged, TextParser::GetCaptionText);
BENCHMARK_CAPTURE(Getter, VersionTagged, kTagged, TextParser::GetVersionNewIn);
BENCHMARK_CAPTURE(Getter, CaptionUntagged, kUntagged, TextParser::GetCaptionText);
BENCHMARK_CAPTURE(Getter, TipUntagged, kUntagged, TextParser::GetTipText);

void Combine(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(TextParser::CombineString(kTagged.c_str(), nullptr, nullptr,
                                                           L"New tip", nullptr, nullptr, nullptr));
    }
}
BENCHMARK(Combine);

void Strip(benchmark::State& state) {
    for (auto _ : state) {
        std::wstring text = L"&Save Page %d of %s As-Is...\tCtrl+Shift+S";
        StripMenuText(text, 15);
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(Strip);

} // namespace

BENCHMARK_MAIN();
