#pragma once

#include "LocalUpdate.h"
#include "LocalUpdateAgent.h"
#include "TempFolder.h"
#include "TestKey.h"
#include "TestProduct.h"
#include "UpdateStorage.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/**
 * A machine for local updates: a product with an environment, registry keys of the test's own and a folder for ini files
 * and descriptions. In descriptions @K@ stands for the keys' path and @F@ for the folder.
 */
class UpdateBench
{
public:
    UpdateBench();
    UpdateBench(const UpdateBench&) = delete;
    UpdateBench& operator=(const UpdateBench&) = delete;
    ~UpdateBench();

    /** Version 17.1.1040, edition qmrpro, language de; an empty text removes the value. */
    void SetEnvironment(const std::wstring& _rtszVersion, const std::wstring& _rtszPid, std::uint32_t _ulLanguage);

    /** Writes a description with these items into a file and returns its path. */
    std::wstring Describe(std::string_view _svItems, std::string_view _svAttributes = "") const;
    std::wstring Describe(const std::wstring& _rtszFile, std::string_view _svDocument) const;
    /** Carries out the description, or a description with these items. @return the result of SendMessage */
    static std::uint32_t Send(const std::wstring& _rtszPath);
    std::uint32_t Apply(std::string_view _svItems, std::string_view _svAttributes = "") const
    {
        return Send(Describe(_svItems, _svAttributes));
    }

    /** Everything below the test's keys, in both views and below both roots, and all sections of the ini file, in lines. */
    std::vector<std::wstring> Snapshot(Varnhelt::UpdateStorage& _rStorage) const;
    std::vector<std::wstring> Snapshot() const;

    const TempFolder& Folder() const { return m_cProduct.Folder(); }
    const std::wstring& Key() const { return m_cKey.Path(); }
    std::wstring Ini() const { return Folder().File(L"test.ini"); }
    Varnhelt::UpdatePlace Place(HKEY _hRoot, ZkCommon::Storage::RegistryView _enView,
                                const std::wstring& _rtszBelow = {}) const;

private:
    std::string Expand(std::string_view _svText) const;

    TestProduct m_cProduct;
    TestKey m_cKey;
};
