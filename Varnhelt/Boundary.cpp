#include "Boundary.h"

#include "ZkComn_DebugLog.h"
#include "ZkComn_String.h"

namespace Varnhelt {

using namespace ZkCommon;

void FailureTexts::TraceXml(const wchar_t* _pszMethod, const Storage::XmlException& _rError) noexcept
{
    Trace(TraceError, L"*** %s - Got ZkCommon::Storage::XmlException() failed. [0x%08x]", _pszMethod,
          _rError.ErrorCode());
}

std::wstring XmlFileOf(const Storage::XmlException& _rError) noexcept
{
    try {
        return String::FromAnsi(_rError.XmlFile());
    } catch (...) { // the line is written without it
        return {};
    }
}

std::uint32_t ResultInFlight(const FailureTexts& _rstTexts) noexcept
{
    try {
        throw;
    } catch (Storage::XmlException* _pError) {
        const Exception::Caught pCaught(_pError);
        _rstTexts.pfnTraceXml(_rstTexts.pszMethod, *_pError);
        return SrvFrwk::Result::g_ulFailed;
    } catch (Exception::Base* _pError) {
        const Exception::Caught pCaught(_pError);
        Trace(TraceError, L"*** %s - Got ZkCommon::Exception::Base(). [0x%08x]", _rstTexts.pszMethod,
              _pError->ErrorCode());
        return SrvFrwk::Result::g_ulFailed;
    } catch (...) {
        Trace(TraceError, L"*** %s - %s", _rstTexts.pszMethod, _rstTexts.pszAny);
        return _rstTexts.ulAnyResult;
    }
}

} // namespace Varnhelt
