#pragma once

#include "TestKey.h"
#include "ZkComn_Owner.h"

#include <cstdint>
#include <string>
#include <vector>

struct TraceRecord;

using Lines = std::vector<std::wstring>;

/**
 * Turns this program's trace log on, onto a trace library that records, for as long as the object lives:
 *
 *     TraceRecorder stTrace(0x110);
 *     ... what is tested ...
 *     EXPECT_EQ(stTrace.Lines(), Lines({L"!!! *** CClass::Method() - it failed. [0x80040201]"}));
 *
 * A module with a separate log that looks for the trace library by name, with its settings on, is recorded too.
 */
class TraceRecorder
{
public:
    explicit TraceRecorder(std::uint32_t _ulLevelMask = 0x111, const wchar_t* _pszModuleName = L"Varnhelt");
    TraceRecorder(const TraceRecorder&) = delete;
    TraceRecorder& operator=(const TraceRecorder&) = delete;
    ~TraceRecorder();

    /** The tag and the message of each line: "!!! text", "@@@ text", ".w. text". */
    std::vector<std::wstring> Lines() const;
    /** The message of each line. */
    std::vector<std::wstring> Messages() const;
    /** The lines as the trace library got them. */
    std::vector<std::wstring> RawLines() const;
    /** Forgets the lines so far. */
    void Clear();

    /** The library's own record: its settings, and what it shall answer. */
    TraceRecord& Record() const { return *m_pRecord; }

private:
    TestKey m_Key;
    ZkCommon::ModuleHandle m_hLibrary; // keeps the record beyond the log's own hold on the library
    TraceRecord* m_pRecord;
};

/** Folder of the test program, without a backslash. */
std::wstring ProgramFolder();
