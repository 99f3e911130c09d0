// Every text function called from eight threads at once on shared inputs, each result
// checked; the first use of the reader's constant tags happens inside the threads.
#include "text/FindTaggedField.h"

#include <framework/StripMenuText.h>
#include <framework/TextParser.h>

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <string>
#include <thread>
#include <vector>

namespace {
using Framework::TextParser;

const std::wstring kTagged = L"\u0001CT=&Cap\u0001TT=\u0001LP=Long\u0001TH=Head";
const std::wstring kUntagged = L"Long\nTip\nCap";
const std::wstring kSlashed = L"/CT=A/TT=B";
const std::wstring kMenu = L"&Save-As %d\tCtrl+S";

// One round over every function; returns how many results were wrong.
int OneRound() {
    int wrong = 0;
    const auto check = [&wrong](bool ok) { wrong += ok ? 0 : 1; };
    std::wstring out;
    check(TextParser::GetCaptionText(kTagged.c_str(), out) && out == L"&Cap");
    check(TextParser::GetTipText(kTagged.c_str(), out) && out == L"Cap");
    check(TextParser::GetLongPromptText(kTagged.c_str(), out) && out == L"Long");
    check(TextParser::GetTipHeaderText(kTagged.c_str(), out) && out == L"Head");
    check(!TextParser::GetTipGuid(kTagged.c_str(), out) && out.empty());
    check(!TextParser::GetVersionNewIn(kUntagged.c_str(), out) && out.empty());
    check(TextParser::GetCaptionText(kUntagged.c_str(), out) && out == L"Cap");
    check(TextParser::GetTipText(kUntagged.c_str(), out) && out == L"Tip");
    check(Framework::Internal::FindTaggedField(kUntagged, L"LP", out) && out == L"Long");
    check(TextParser::ReplaceSlashes(kSlashed.c_str()) == L"\u0001CT=A\u0001TT=B");
    check(TextParser::BuildString(L"C", nullptr, L"T", nullptr, nullptr, L"V") ==
          L"\u0001CT=C\u0001TT=T\u0001NV=V");
    check(TextParser::CombineString(L"\u0001TT=t\u0001\u0001CT=c", nullptr, L"l", nullptr, nullptr,
                                    nullptr, nullptr) == L"\u0001CT=c\u0001LP=l\u0001TT=t\u0001");
    std::wstring menu = kMenu;
    StripMenuText(menu, 15);
    check(menu == L"SaveAs ");
    return wrong;
}

TEST(TextConcurrency, AllFunctionsFromEightThreads) {
    constexpr int kThreads = 8;
    constexpr int kRounds = 2000;
    std::atomic<int> wrong{0};
    std::latch start(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            for (int round = 0; round < kRounds; ++round) {
                wrong += OneRound();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong.load(), 0);
}

} // namespace
