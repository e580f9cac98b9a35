#include "Machine/Host.h"

#include "ZkComn_String.h"

#include <system_error>

namespace Vrnt {

std::filesystem::path ModulePath(const GlobalOptions& _rstOptions)
{
    return _rstOptions.sModule.empty() ? ToolFolder() / L"Varnhelt.dll"
                                       : std::filesystem::path(ToFullPath(_rstOptions.sModule));
}

Varnhelt::Module LoadModule(const GlobalOptions& _rstOptions)
{
    const std::filesystem::path tszPath = ModulePath(_rstOptions);
    try {
        return Varnhelt::Module(tszPath);
    } catch (const std::system_error& rError) {
        throw ModuleError("cannot load \"" + ZkCommon::String::ToUtf8(tszPath.wstring()) +
                          "\": " + SystemErrorText(static_cast<std::uint32_t>(rError.code().value())));
    }
}

} // namespace Vrnt
