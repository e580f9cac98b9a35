#pragma once

#include "TestKey.h"
#include "TestProduct.h"
#include "Update/UpdateStorage.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/**
 * A machine for local updates: a product with an environment, registry keys of the test's own and a folder for ini
 * files and descriptions. In descriptions @K@ stands for the keys' path, @F@ for the folder and @ALL@ for conditions
 * that this machine meets. What the sample changes below the product's own key, or in Windows' folder, is moved there.
 */
class UpdateBench
{
public:
    UpdateBench() { SetEnvironment(L"17.1.1040", L"QE17-0001", 32); } // edition qmrpro, language de
    ~UpdateBench() { RemoveEnvironment(); }

    static void SetEnvironment(const std::wstring& _rtszVersion, const std::wstring& _rtszPid,
                               std::uint32_t _ulLanguage);
    static void RemoveEnvironment();

    /** Writes a description into a file and returns its path. */
    std::wstring Describe(const std::wstring& _rtszFile, std::string _sDocument) const;
    /** The same with these items. */
    std::wstring Describe(const std::string& _rsItems, const std::string& _rsAttributes = {}) const;

    /** Carries out the description, or a description with these items. @return the result of SendMessage */
    static std::uint32_t Send(std::wstring _tszPath);
    std::uint32_t Apply(const std::string& _rsItems) const { return Send(Describe(_rsItems)); }

    /**
     * In lines: everything below the test's keys, in both views and below both roots, and those sections of ini files
     * in the folder that tests use. Of the machine, or of another storage.
     */
    std::vector<std::wstring> Snapshot(Varnhelt::UpdateStorages* _pStorages = nullptr) const;

    /** A value in a line of a snapshot: a text in quotation marks, else the type's number and the bytes. */
    static std::wstring TextOf(const Varnhelt::UpdateStorage::Value& _rstValue);

    /** The ini files of the sample are in snapshots, too. */
    void WatchSampleFiles();

    /** Removes the test's keys and its ini file. */
    void Clear() const;

    const TempFolder& Folder() const { return m_cProduct.Folder(); }
    const std::wstring& Key() const { return m_cKey.Path(); }

private:
    TestProduct m_cProduct;
    TestKey m_cKey;
    std::vector<std::pair<const wchar_t*, std::vector<std::wstring>>> m_vecFile = {
        {L"test.ini", {L"A", L"B", L"C", L"D"}}};
};
