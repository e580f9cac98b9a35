#pragma once

#include "ZkComn_DebugLog.h"

#include <cstdint>
#include <type_traits>

/** The lines that a method writes under its own name, which is a literal of the form "CClass::Method()". */
namespace Varnhelt {

/**
 * Lines that begin with "*** CClass::Method() - ". Formats are held against their arguments as those of Trace are, and
 * the lines name the place of the call. Thread-safe; nothing is thrown.
 */
class MethodLines
{
public:
    explicit constexpr MethodLines(const wchar_t* _pszMethod) noexcept : m_pszMethod(_pszMethod) {}

    /** cTrace.Error(L"it failed. [0x%08x]", ulCode) */
    template <class... TArgs>
    void Error(std::type_identity_t<ZkCommon::TraceText<TArgs...>> _stText, const TArgs&... _args) const noexcept
    {
        Write(ZkCommon::TraceError, _stText, _args...);
    }
    template <class... TArgs>
    void Notice(std::type_identity_t<ZkCommon::TraceText<TArgs...>> _stText, const TArgs&... _args) const noexcept
    {
        Write(ZkCommon::TraceNotice, _stText, _args...);
    }
    template <class... TArgs>
    void Detail(std::type_identity_t<ZkCommon::TraceText<TArgs...>> _stText, const TArgs&... _args) const noexcept
    {
        Write(ZkCommon::TraceDetail, _stText, _args...);
    }

    const wchar_t* Method() const noexcept { return m_pszMethod; }

private:
    template <class... TArgs>
    void Write(ZkCommon::TraceLevel _enLevel, const ZkCommon::TraceText<TArgs...>& _rstText,
               const TArgs&... _args) const noexcept
    {
        if (ZkCommon::TracePasses(_enLevel)) {
            WriteAt(_rstText.stPlace, _enLevel, _rstText.pszFormat, ZkCommon::TraceFormat::Pass(_args)...);
        }
    }
    void WriteAt(ZkCommon::SourcePlace _stPlace, std::uint32_t _ulLevel, const wchar_t* _pszFormat, ...) const noexcept;

    const wchar_t* m_pszMethod;
};

/** The lines of a method that also has an entry line, and a leave line on those ways out that say so. */
class MethodTrace : public MethodLines
{
public:
    explicit MethodTrace(const wchar_t* _pszMethod,
                         ZkCommon::SourcePlace _stPlace = ZkCommon::SourcePlace::Here()) noexcept;
    /** With the request's value type and sub-type in the entry line. */
    MethodTrace(const wchar_t* _pszMethod, std::uint32_t _ulValueType, std::uint32_t _ulValueSubType,
                ZkCommon::SourcePlace _stPlace = ZkCommon::SourcePlace::Here()) noexcept;
    MethodTrace(const MethodTrace&) = delete;
    MethodTrace& operator=(const MethodTrace&) = delete;

    /** Writes the leave line and hands the result through: return cTrace.Leave(ulResult). No call, no line. */
    template <class TResult>
    TResult Leave(TResult _result) const noexcept
    {
        WriteLeave(Method());
        return _result;
    }
    /** The same for a method whose leave line names another one. */
    template <class TResult>
    TResult LeaveAs(const wchar_t* _pszMethod, TResult _result) const noexcept
    {
        WriteLeave(_pszMethod);
        return _result;
    }
    /** Writes the leave line of a method without a result. */
    void Leave() const noexcept { WriteLeave(Method()); }

    /** Whether the argument is not null; otherwise an error line names it. */
    bool Has(const void* _pData, const wchar_t* _pszName) const noexcept
    {
        if (_pData == nullptr) {
            WriteInvalid(_pszName);
        }
        return _pData != nullptr;
    }

private:
    void WriteInvalid(const wchar_t* _pszName) const noexcept;
    void WriteLeave(const wchar_t* _pszMethod) const noexcept;

    ZkCommon::SourcePlace m_stPlace;
};

} // namespace Varnhelt
