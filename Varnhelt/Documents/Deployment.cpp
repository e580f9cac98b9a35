#include "Documents/Deployment.h"

namespace Varnhelt::Documents {

using namespace ZkCommon;

namespace {

void TraceDeploymentXml(const wchar_t* _pszMethod, const Storage::XmlException& _rError) noexcept
{
    const MethodLines stLines(_pszMethod);
    stLines.Error(L"Got ZkCommon::Storage::XmlException() failed. ErrorCode:[0x%08x], Line[0x%08x]",
                  _rError.ErrorCode(), _rError.XmlLine());
    stLines.Error(L"Got ZkCommon::Storage::XmlException() failed. ErrorCode:[0x%08x], Line[0x%08x], FileName:[%s]",
                  _rError.ErrorCode(), _rError.XmlLine(), XmlFileOf(_rError));
}

} // namespace

FailureTexts DeploymentFailures(const wchar_t* _pszMethod) noexcept
{
    return {_pszMethod, &TraceDeploymentXml, L"Got Exception."};
}

} // namespace Varnhelt::Documents
