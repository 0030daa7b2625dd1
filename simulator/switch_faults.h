#pragma once

#include <chrono>
#include <set>
#include <string>

/// What goes wrong with the switch, on purpose. A fresh value is a healthy switch.
struct SwitchFaults
{
    /// Hears and obeys, but says nothing.
    bool silent = false;
    /// Wait before every answer.
    std::chrono::milliseconds delay{0};
    /// Answers come in pieces of so many bytes; 0: whole.
    int chunkBytes = 0;
    /// Wait between two such pieces.
    std::chrono::milliseconds chunkGap{20};
    /// A line of junk (a NUL, bytes that are no UTF-8, an escape sequence) before every answer.
    bool garbage = false;
    /// Lines left out of the answers, by key as in answerKeys().
    std::set<std::string> missingKeys{};
    /// Lines end in CR LF instead of LF.
    bool crlf = false;
    /// So many bytes of filler lines behind the first line of the "//rl" answer; 0: none.
    int oversizeBytes = 0;
    /// A front panel press every so often; 0: never.
    std::chrono::milliseconds unsolicitedEvery{0};
    /// So many bytes of text behind the next "//BP" answer, once; then 0 again.
    int floodBytes = 0;
    /// So many "//rl" answers say "KM Port Limit: x"; counts down to 0.
    int badPortLimitReads = 0;
    /// The other dialect: "Current USB Control: 2" with a colon. The utility's reading of the
    /// status understands the form without.
    bool usbColon = false;
    /// The other dialect: X and Y of custom settings filled up with blanks from the left, "C2" tab
    /// "120  80 DESK", instead of zeros.
    bool blankPadding = false;

    bool operator==(const SwitchFaults &) const = default;
};
