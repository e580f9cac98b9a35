#include "TestProduct.h"

#include "Frwk_Settings.h"
#include "ZkComn_File.h"
#include "ZkComn_FileCrypt.h"

#include <algorithm>
#include <filesystem>

using namespace ZkCommon::Storage;

namespace {

File::KeySpan KeyOf(const Varnhelt::Document& _rstDocument)
{
    return File::KeySpan(reinterpret_cast<const std::uint8_t*>(_rstDocument.szKey), File::g_uKeySize);
}

const wchar_t* FileOf(const Varnhelt::Document& _rstDocument, const wchar_t* _pszFile)
{
    return _pszFile != nullptr ? _pszFile : _rstDocument.pszFile;
}

} // namespace

TestProduct::TestProduct()
{
    Register(m_cFolder.Path().wstring());
}

TestProduct::~TestProduct()
{
    Unregister();
}

void TestProduct::Register(const std::wstring& _rtszPath)
{
    ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey, L"ProductPath", REG_SZ, _rtszPath.c_str(),
                      static_cast<DWORD>((_rtszPath.size() + 1) * sizeof(wchar_t)));
}

void TestProduct::Unregister()
{
    ::RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey, L"ProductPath");
}

void TestProduct::Store(Varnhelt::DocumentId _enDocument, std::string_view _svXml, const wchar_t* _pszFile) const
{
    const Varnhelt::Document& stDocument = Varnhelt::DocumentOf(_enDocument);
    m_cFolder.Write(FileOf(stDocument, _pszFile), _svXml);
    if (stDocument.szKey != nullptr) {
        const std::wstring tszPath = m_cFolder.File(FileOf(stDocument, _pszFile));
        File::EncryptFile(tszPath, tszPath, KeyOf(stDocument));
    }
}

std::string TestProduct::Stored(Varnhelt::DocumentId _enDocument, const wchar_t* _pszFile) const
{
    return m_cFolder.Read(FileOf(Varnhelt::DocumentOf(_enDocument), _pszFile));
}

std::string TestProduct::Plain(Varnhelt::DocumentId _enDocument, const wchar_t* _pszFile) const
{
    const Varnhelt::Document& stDocument = Varnhelt::DocumentOf(_enDocument);
    if (stDocument.szKey == nullptr) {
        return Stored(_enDocument, _pszFile);
    }
    const TempFolder cPlain;
    File::DecryptFile(m_cFolder.File(FileOf(stDocument, _pszFile)), cPlain.File(L"plain"), KeyOf(stDocument));
    return cPlain.Read(L"plain");
}

std::vector<std::wstring> TestProduct::Leftovers() const
{
    std::vector<std::wstring> vecName;
    for (const std::wstring& tszFolder : {m_cFolder.Path().wstring(), File::SystemTempFolder()}) {
        for (const auto& cEntry : std::filesystem::directory_iterator(tszFolder)) {
            const std::wstring tszName = cEntry.path().filename().wstring();
            const bool bDocument = std::ranges::any_of(Varnhelt::DocumentTable(), [&](const auto& _rstDocument) {
                return _rstDocument.pszFile != nullptr && tszName == _rstDocument.pszFile;
            });
            if (!bDocument && cEntry.is_regular_file()) {
                vecName.push_back(cEntry.path().wstring());
            }
        }
    }
    return vecName;
}
