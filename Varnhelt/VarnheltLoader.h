#pragma once

#include "Varnhelt.h"
#include "VarnheltCalls.h"

#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>
#include <windows.h>

/** For hosts that load Varnhelt.dll at run time: the module and its function objects as owners. */
namespace Varnhelt {

/**
 * A loaded Varnhelt.dll, initialised. Move-only; destroying it uninitialises and unloads, so it outlives every Function
 * that it handed out. One that was moved from can only be destroyed. Any number of threads may create functions at the
 * same time; loading and destroying belong to one.
 */
class Module
{
public:
    /**
     * @param _tszPath  the full path: what the library needs is then looked for beside it
     * @throws std::system_error with the system's error when the file cannot be loaded or is no Varnhelt.dll
     */
    explicit Module(const std::filesystem::path& _tszPath)
        : m_hModule(::LoadLibraryExW(_tszPath.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH))
    {
        if (m_hModule == nullptr) {
            Fail("Varnhelt.dll cannot be loaded");
        }
        Bind(m_pfnInitialize, "Vrnt_Initialize");
        Bind(m_pfnUninitialize, "Vrnt_Uninitialize");
        Bind(m_pfnCreateFunction, "Vrnt_CreateFunction");
        Bind(m_pfnFreeFunction, "Vrnt_FreeFunction");
        m_pfnInitialize(0, nullptr);
    }
    Module(Module&& _rOther) noexcept
        : m_hModule(std::exchange(_rOther.m_hModule, nullptr)),
          m_pfnInitialize(_rOther.m_pfnInitialize),
          m_pfnUninitialize(_rOther.m_pfnUninitialize),
          m_pfnCreateFunction(_rOther.m_pfnCreateFunction),
          m_pfnFreeFunction(_rOther.m_pfnFreeFunction)
    {}
    Module& operator=(Module&&) = delete;
    ~Module()
    {
        if (m_hModule != nullptr) {
            m_pfnUninitialize(0, nullptr);
            ::FreeLibrary(m_hModule);
        }
    }

    /** Gives a function object back to its module. */
    struct Free
    {
        decltype(&Vrnt_FreeFunction) pfnFreeFunction;
        void operator()(SrvFrwk::Interface::IFunctionProvider* _pFunction) const { pfnFreeFunction(_pFunction); }
    };
    using Function = std::unique_ptr<SrvFrwk::Interface::IFunctionProvider, Free>;

    /** @return a new function object, the caller's; null when memory runs out or the module could not set itself up */
    Function CreateFunction() const
    {
        SrvFrwk::Interface::IFunctionProvider* pFunction = nullptr;
        m_pfnCreateFunction(&pFunction, 0, nullptr);
        return Function(pFunction, Free{m_pfnFreeFunction});
    }

    /**
     * The typed calls of VarnheltCalls.h, by a function object that lasts for the call.
     * `module.Query<ValueType::g_ulServiceUnit>()`, `module.Query<ValueType::g_ulKeyConfig>({.tszXmlDir = folder})`,
     * `module.Query<ValueType::g_ulThreatDescription>(1024)`. Any number of threads may call.
     * @throws Failure
     */
    template <std::uint32_t t_ulValueType>
    requires std::is_void_v<typename SrvFrwk::CallsOf<t_ulValueType>::Request>
    auto Query() const
    {
        return ValueOf([&] { return TryQuery<t_ulValueType>(); });
    }
    template <std::uint32_t t_ulValueType>
    requires(!std::is_void_v<typename SrvFrwk::CallsOf<t_ulValueType>::Request>) auto Query(
        const typename SrvFrwk::CallsOf<t_ulValueType>::Request& _rRequest) const
    {
        return ValueOf([&] { return TryQuery<t_ulValueType>(_rRequest); });
    }
    template <std::uint32_t t_ulValueType>
    void Store(const typename SrvFrwk::CallsOf<t_ulValueType>::Stored& _rStored) const
    {
        Checked([&] { return TryStore<t_ulValueType>(_rStored); });
    }
    bool Update(std::wstring _tszPath) const
    {
        return Checked([&] { return TryUpdate(std::move(_tszPath)); }) == SrvFrwk::Result::g_ulSuccess;
    }

    /** The same without exceptions for failures: `module.TryQuery<ValueType::g_ulServiceUnit>().ulResult`. */
    template <std::uint32_t t_ulValueType>
    requires std::is_void_v<typename SrvFrwk::CallsOf<t_ulValueType>::Request> Answer<t_ulValueType> TryQuery()
    const
    {
        return AnswerBy<t_ulValueType>([](SrvFrwk::Interface::IFunctionProvider& _rFunction) {
            return Varnhelt::TryQuery<t_ulValueType>(_rFunction);
        });
    }
    template <std::uint32_t t_ulValueType>
    requires(!std::is_void_v<typename SrvFrwk::CallsOf<t_ulValueType>::Request>) Answer<t_ulValueType> TryQuery(
        const typename SrvFrwk::CallsOf<t_ulValueType>::Request& _rRequest)
    const
    {
        return AnswerBy<t_ulValueType>([&](SrvFrwk::Interface::IFunctionProvider& _rFunction) {
            return Varnhelt::TryQuery<t_ulValueType>(_rFunction, _rRequest);
        });
    }
    template <std::uint32_t t_ulValueType>
    std::uint32_t TryStore(const typename SrvFrwk::CallsOf<t_ulValueType>::Stored& _rStored) const
    {
        return WithFunction([&](SrvFrwk::Interface::IFunctionProvider& _rFunction) {
            return Varnhelt::TryStore<t_ulValueType>(_rFunction, _rStored);
        });
    }
    std::uint32_t TryUpdate(std::wstring _tszPath) const
    {
        return WithFunction([&](SrvFrwk::Interface::IFunctionProvider& _rFunction) {
            return Varnhelt::TryUpdate(_rFunction, std::move(_tszPath));
        });
    }

private:
    /** @return the call's result, or that of making a function object for it */
    template <class TCall>
    std::uint32_t WithFunction(const TCall& _fnCall) const
    {
        SrvFrwk::Interface::IFunctionProvider* pFunction = nullptr;
        const std::uint32_t ulResult = m_pfnCreateFunction(&pFunction, 0, nullptr);
        const Function pOwner(pFunction, Free{m_pfnFreeFunction});
        return SrvFrwk::Result::IsFailure(ulResult) ? ulResult : _fnCall(*pOwner);
    }

    template <std::uint32_t t_ulValueType, class TAsk>
    Answer<t_ulValueType> AnswerBy(const TAsk& _fnAsk) const
    {
        Answer<t_ulValueType> stAnswer;
        stAnswer.ulResult = WithFunction([&](SrvFrwk::Interface::IFunctionProvider& _rFunction) {
            stAnswer = _fnAsk(_rFunction);
            return stAnswer.ulResult;
        });
        return stAnswer;
    }

    [[noreturn]] void Fail(const char* _szWhat)
    {
        const int iError = static_cast<int>(::GetLastError());
        if (m_hModule != nullptr) {
            ::FreeLibrary(std::exchange(m_hModule, nullptr));
        }
        throw std::system_error(iError, std::system_category(), _szWhat);
    }

    template <class TFunction>
    void Bind(TFunction*& _rpfnFunction, const char* _szName)
    {
        const FARPROC pfnFound = ::GetProcAddress(m_hModule, _szName);
        if (pfnFound == nullptr) {
            Fail(_szName);
        }
        // By way of void*: the compilers warn of a cast between function types.
        _rpfnFunction = reinterpret_cast<TFunction*>(reinterpret_cast<void*>(pfnFound));
    }

    HMODULE m_hModule;
    decltype(&Vrnt_Initialize) m_pfnInitialize = nullptr;
    decltype(&Vrnt_Uninitialize) m_pfnUninitialize = nullptr;
    decltype(&Vrnt_CreateFunction) m_pfnCreateFunction = nullptr;
    decltype(&Vrnt_FreeFunction) m_pfnFreeFunction = nullptr;
};

} // namespace Varnhelt
