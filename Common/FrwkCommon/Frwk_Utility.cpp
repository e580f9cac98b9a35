#include "Frwk_Utility.h"

#include "Frwk_Settings.h"
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
        const std::unique_ptr<Storage::Registry> pStorage(new (std::nothrow)
                                                              Storage::Registry(HKEY_LOCAL_MACHINE, g_szProductKey));
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

std::wstring PathIn(const std::wstring& _rtszFolder, const wchar_t* _pszFile)
{
    return _rtszFolder.empty() ? std::wstring() : String::WithBackslash(_rtszFolder) + _pszFile;
}

} // namespace Frwk::Utility
