#include "Frwk_Utility.h"

#include "ZkComn_DebugLog.h"
#include "ZkComn_Exception.h"
#include "ZkComn_Registry.h"
#include "ZkComn_String.h"

#include <memory>
#include <new>
#include <utility>

namespace Frwk::Utility {

using namespace ZkCommon;

std::wstring GetInstalledFolder()
{
    try {
        const std::unique_ptr<Storage::Registry> pStorage(
            new (std::nothrow) Storage::Registry(HKEY_LOCAL_MACHINE, L"Software\\Kestrovane\\Pelto"));
        if (pStorage == nullptr) {
            Trace(TraceError, L"*** Frwk::Utility::GetInstalledFolder() -  pStorage was invalid.");
            return {};
        }
        return pStorage->ReadString(L"ProductPath");
    } catch (Storage::Exception* _pError) {
        const Exception::Caught pCaught(_pError);
        Trace(TraceError, L"*** Frwk::Utility::GetInstalledFolder() -  Got ZkCommon::Storage::Exception(). [0x%08x]",
              _pError->ErrorCode());
        return {};
    }
}

std::wstring GetInstalledPath(const wchar_t* _pszFile)
{
    std::wstring tszPath = GetInstalledFolder();
    return tszPath.empty() ? tszPath : String::WithBackslash(std::move(tszPath)) + _pszFile;
}

} // namespace Frwk::Utility
