#include "Update/LocalUpdateAgentKey.h"

#include "Boundary.h"
#include "Documents/LocalUpdate.h"
#include "Documents/RegistryWords.h"
#include "Documents/UpdateWords.h"
#include "Frwk_Utility.h"
#include "ZkComn_DebugLog.h"
#include "ZkComn_Exception.h"
#include "ZkComn_Platform.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

Storage::RegistryView ViewOf(std::wstring_view _svWord)
{
    return static_cast<Storage::RegistryView>(Frwk::Utility::ToValue(UpdateWords::g_stView, _svWord));
}

[[noreturn]] void Fail(std::uint32_t _ulError, std::uint32_t _ulLine = __builtin_LINE())
{
    throw new Storage::Exception(_ulError, __FILE__, _ulLine);
}

std::vector<std::uint8_t> BytesOf(std::wstring_view _svHex)
{
    const auto Digit = [](wchar_t _c) -> std::uint32_t {
        if (_c >= L'0' && _c <= L'9') {
            return static_cast<std::uint32_t>(_c - L'0');
        }
        const wchar_t c = static_cast<wchar_t>(_c | 0x20);
        if (c < L'a' || c > L'f') {
            Fail(ERROR_INVALID_DATA);
        }
        return static_cast<std::uint32_t>(c - L'a' + 10);
    };
    if (_svHex.size() < 2) {
        Fail(ERROR_INVALID_DATA);
    }
    std::vector<std::uint8_t> vecBytes(_svHex.size() / 2); // an odd last digit is ignored
    for (std::size_t i = 0; i < vecBytes.size(); ++i) {
        vecBytes[i] = static_cast<std::uint8_t>(Digit(_svHex[2 * i]) << 4 | Digit(_svHex[2 * i + 1]));
    }
    return vecBytes;
}

/** A type of value: from the text of a description, and whether a value is of the type. */
struct TypeRow
{
    UpdateWords::Type enType;
    bool bAppend; // may be appended to
    UpdateStorage::Value (*pfnOf)(const std::wstring& _rtszText);
    void (*pfnCheck)(const UpdateStorage::Value& _rstValue); // throws when it is of another type
};

template <class TNumber>
UpdateStorage::Value NumberValue(std::optional<TNumber> _ulNumber)
{
    if (!_ulNumber) {
        Fail(ERROR_INVALID_DATA);
    }
    return UpdateStorage::Value::Of(*_ulNumber);
}

using Value = UpdateStorage::Value;

constexpr TypeRow g_aType[] = {
    {UpdateWords::TypeUint32, false,
     [](const std::wstring& _rtszText) { return NumberValue(String::ToWholeNumber(_rtszText)); },
     [](const Value& _rstValue) { static_cast<void>(_rstValue.Number()); }},
    {UpdateWords::TypeUint64, false,
     [](const std::wstring& _rtszText) { return NumberValue(String::ToWholeNumber64(_rtszText)); },
     [](const Value& _rstValue) { static_cast<void>(_rstValue.Number64()); }},
    {UpdateWords::TypeString, true, [](const std::wstring& _rtszText) { return Value::Of(_rtszText); },
     [](const Value& _rstValue) { static_cast<void>(_rstValue.Text()); }},
    {UpdateWords::TypeBinary, true, [](const std::wstring& _rtszText) { return Value::Of(BytesOf(_rtszText)); },
     [](const Value& _rstValue) { static_cast<void>(_rstValue.Binary()); }},
};

const TypeRow& TypeOf(std::wstring_view _svWord)
{
    const Frwk::Word* pWord = Frwk::Utility::FindWord(UpdateWords::g_stType, _svWord);
    if (pWord == nullptr) {
        Fail(ERROR_INVALID_PARAMETER);
    }
    return *std::ranges::find(g_aType, pWord->ulValue, &TypeRow::enType);
}

/** The text that stands before what is appended. */
std::wstring TextBefore(const UpdatePlace& _rstPlace, const LocalUpdateEntry& _rstEntry, const Value& _rstValue)
{
    if (!_rstPlace.IsRegistry() || TypeOf(_rstEntry.tszType).enType == UpdateWords::TypeString) {
        return _rstValue.Text();
    }
    return HexadecimalOf(_rstValue.Binary());
}

/** The folder behind a path macro. What is read and what fails is logged; empty on failure. */
struct MacroRow
{
    std::wstring_view svMacro;
    std::wstring (*pfnFolder)();
};

using FolderBuffer = std::array<wchar_t, MAX_PATH>;

std::wstring SystemFolder(const FolderBuffer& _raBuffer, UINT _ulLength, const wchar_t* _pszCall,
                          const wchar_t* _pszName)
{
    if (_ulLength == 0 || _ulLength > _raBuffer.size()) {
        Trace(TraceError, L"*** CLocalUpdateAgentKey::ReplacePath() - %s failed. [0x%08x]", _pszCall, ::GetLastError());
        return {};
    }
    std::wstring tszFolder(_raBuffer.data(), std::min<std::size_t>(_ulLength, _raBuffer.size() - 1));
    Trace(TraceNotice, L"*** CLocalUpdateAgentKey::ReplacePath() - %s [%s]", _pszName, tszFolder);
    return tszFolder;
}

std::wstring InstalledFolder()
{
    std::wstring tszFolder = Frwk::Utility::GetInstalledFolder();
    if (tszFolder.empty()) {
        Trace(TraceError, L"*** CLocalUpdateAgentKey::ReplacePath() - Frwk::Utility::GetInstalledFolder() failed.");
    } else {
        Trace(TraceNotice, L"*** CLocalUpdateAgentKey::ReplacePath() - InstalledFolder [%s]", tszFolder);
    }
    return tszFolder;
}

std::wstring WindowsFolder()
{
    FolderBuffer aBuffer{};
    const UINT ulLength = ::GetWindowsDirectoryW(aBuffer.data(), MAX_PATH);
    return SystemFolder(aBuffer, ulLength, L"GetWindowsDirectory()", L"tszWindowsDirectory");
}

std::wstring SystemFolder()
{
    FolderBuffer aBuffer{};
    const UINT ulLength = ::GetSystemDirectoryW(aBuffer.data(), MAX_PATH);
    return SystemFolder(aBuffer, ulLength, L"GetSystemDirectory()", L"tszSystemDirectory");
}

std::wstring CurrentFolder()
{
    FolderBuffer aBuffer{};
    const UINT ulLength = ::GetCurrentDirectoryW(MAX_PATH, aBuffer.data());
    return SystemFolder(aBuffer, ulLength, L"GetCurrentDirectory()", L"tszCurrentDirectory");
}

/** In the order in which they are looked for; the first that a path has is the only one that is replaced. */
constexpr MacroRow g_aMacro[] = {
    {L"$INSTALL$", &InstalledFolder},
    {L"$WINDOWS$", &WindowsFolder},
    {L"$SYSTEM$", &SystemFolder},
    {L"$CURRENT$", &CurrentFolder},
};

std::wstring Below(const std::wstring& _rtszPath, const std::wstring& _rtszName)
{
    return String::WithBackslash(_rtszPath) + _rtszName;
}

} // namespace

namespace Varnhelt {

bool HasPathMacro(const std::wstring& _rtszPath)
{
    return std::ranges::any_of(
        g_aMacro, [&](const MacroRow& _rstMacro) { return _rtszPath.find(_rstMacro.svMacro) != std::wstring::npos; });
}

HKEY RegistryRootOf(std::wstring_view _svWord)
{
    const bool bKnown = Frwk::Utility::FindWord(Documents::g_stUpdateRoot, _svWord) != nullptr; // with case
    return bKnown ? Documents::RegistryRoot::Read(_svWord) : nullptr;
}

std::wstring HexadecimalOf(const std::vector<std::uint8_t>& _rvecBytes)
{
    constexpr wchar_t szDigits[] = L"0123456789abcdef";
    std::wstring tszText;
    tszText.reserve(_rvecBytes.size() * 2);
    for (const std::uint8_t ucByte : _rvecBytes) {
        tszText += szDigits[ucByte >> 4];
        tszText += szDigits[ucByte & 15];
    }
    return tszText;
}

} // namespace Varnhelt

struct CLocalUpdateAgentKey::Action
{
    UpdateWords::Action enAction;
    UpdateEffect enEffect;
    bool (CLocalUpdateAgentKey::*pfnIsExisted)(const UpdatePlace&, const LocalUpdateEntry&);
    bool bSkipPresent; // nothing to do when it exists, unless it is to be overwritten; else when it does not
    UpdateReason enNotToDo;
    std::uint32_t (CLocalUpdateAgentKey::*pfnAct)(const UpdatePlace&, const LocalUpdateEntry&);
};

/** Carries out a body that gives a result; an exception is logged under the method's name, noted and answered. */
template <class TBody>
std::uint32_t CLocalUpdateAgentKey::Guarded(const wchar_t* _pszMethod, TBody&& _fnBody)
{
    return AtBoundary({_pszMethod}, [&] {
        try {
            return _fnBody();
        } catch (Exception::Base* _pError) {
            m_stDecision.enReason = UpdateReason::SystemError;
            m_stDecision.ulError = _pError->ErrorCode();
            throw;
        } catch (...) {
            m_stDecision.enReason = UpdateReason::SystemError;
            m_stDecision.ulError = ERROR_OUTOFMEMORY;
            throw;
        }
    });
}

/** As Guarded, with the method's entry line, and its leave line when all went well. */
template <class TBody>
std::uint32_t CLocalUpdateAgentKey::Step(const wchar_t* _pszMethod, TBody&& _fnBody)
{
    const MethodTrace cTrace(_pszMethod);
    const std::uint32_t ulResult = Guarded(_pszMethod, _fnBody);
    return Result::IsFailure(ulResult) ? ulResult : cTrace.Leave(ulResult);
}

std::uint32_t CLocalUpdateAgentKey::DoAction(LocalUpdateKey* _pstKey)
{
    return AtBoundary({L"CLocalUpdateAgentKey::DoAction()"}, [&] {
        const MethodTrace cTrace(L"CLocalUpdateAgentKey::DoAction()");
        if (_pstKey == nullptr) {
            Trace(TraceError, L"*** CLocalUpdateAgentKey::DoAction() - pLocalUpdateKey was invalid.");
            return Result::g_ulMissingObject;
        }
        const UpdateCheck stCheck = CheckUpdate(*_pstKey);
        if (stCheck.enReason != UpdateReason::None) {
            TellItem(*_pstKey, stCheck.enReason);
        }
        if (Result::IsFailure(stCheck.ulResult)) {
            Trace(TraceError, L"*** CLocalUpdateAgentKey::DoAction() - CheckUpdate() failed(). [0x%08x]",
                  stCheck.ulResult);
            return stCheck.ulResult;
        }
        const bool bUpdate = stCheck.enReason == UpdateReason::None;
        Trace(TraceNotice, L"*** CLocalUpdateAgentKey::DoAction() - bUpdate [%d].", bUpdate ? 1 : 0);
        if (!bUpdate) {
            Trace(TraceNotice, L"*** CLocalUpdateAgentKey::DoAction() - not match update environment.");
            return Result::g_ulSuccess;
        }
        const std::optional<UpdatePlace> stPlace = CreateKey(*_pstKey);
        if (!stPlace) {
            Trace(TraceError, L"*** CLocalUpdateAgentKey::DoAction() - pKey was invalid.");
            TellItem(*_pstKey, _pstKey->tszKind == g_szIniFileKind ? UpdateReason::NoPath : UpdateReason::UnknownRoot);
            return Result::g_ulMissingObject;
        }
        Trace(TraceNotice, L"*** CLocalUpdateAgentKey::DoAction() - Root[%s] Base[%s]", _pstKey->tszRoot,
              _pstKey->tszPath);
        TellItem(*_pstKey, UpdateReason::None);
        std::uint32_t ulResult = Result::g_ulSuccess;
        for (const LocalUpdateEntry& stEntry : _pstKey->lstEntry) {
            ulResult = DoEntry(*stPlace, stEntry);
        }
        return cTrace.Leave(ulResult);
    });
}

void CLocalUpdateAgentKey::TellItem(const LocalUpdateKey& _rstKey, UpdateReason _enReason) const
{
    if (m_pObserver != nullptr) {
        m_pObserver->OnItem(_rstKey, _enReason);
    }
}

/** An entry, its conditions first. @return its result */
std::uint32_t CLocalUpdateAgentKey::DoEntry(const UpdatePlace& _rstPlace, const LocalUpdateEntry& _rstEntry)
{
    const UpdateCheck stCheck = CheckUpdate(_rstEntry);
    m_stDecision = {UpdateEffect::Skip, stCheck.enReason, ERROR_SUCCESS};
    std::uint32_t ulResult = stCheck.ulResult;
    if (Result::IsFailure(ulResult)) {
        m_stDecision.enEffect = UpdateEffect::Refuse;
        Trace(TraceError, L"*** CLocalUpdateAgentKey::DoAction() - CheckUpdate() failed(). [0x%08x]", ulResult);
    } else {
        const bool bUpdate = stCheck.enReason == UpdateReason::None;
        Trace(TraceNotice, L"*** CLocalUpdateAgentKey::DoAction() - bUpdate [%d].", bUpdate ? 1 : 0);
        if (!bUpdate) {
            Trace(TraceNotice, L"*** CLocalUpdateAgentKey::DoAction() - not match update environment.");
        } else if (ulResult = OnAction(_rstPlace, _rstEntry); Result::IsFailure(ulResult)) {
            Trace(TraceError, L"*** CLocalUpdateAgentKey::DoAction() - Name[%s] Type[%s] Value[%s] failed. [0x%08x]",
                  _rstEntry.tszName, _rstEntry.tszType, _rstEntry.tszValue, ulResult);
        }
    }
    if (m_pObserver != nullptr) {
        m_pObserver->OnEntry(_rstEntry, m_stDecision);
    }
    return ulResult;
}

std::optional<UpdatePlace> CLocalUpdateAgentKey::CreateKey(LocalUpdateKey& _rstKey)
{
    UpdatePlace stPlace;
    if (_rstKey.tszKind == g_szRegistryKind) {
        stPlace.hRoot = RegistryRootOf(_rstKey.tszRoot);
        if (stPlace.hRoot == nullptr) {
            return std::nullopt;
        }
        stPlace.enView = ViewOf(_rstKey.tszAccessMode);
        stPlace.tszPath = _rstKey.tszPath;
        Trace(TraceNotice, L"*** CLocalUpdateAgentKey::CreateKey() - Root[0x%08x]",
              static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(stPlace.hRoot)));
        return stPlace;
    }
    if (_rstKey.tszKind == g_szIniFileKind) {
        ReplacePath(_rstKey.tszRoot);
        if (_rstKey.tszRoot.empty()) {
            return std::nullopt;
        }
        stPlace.enKind = UpdatePlace::Kind::IniFile;
        stPlace.tszPath = _rstKey.tszRoot;
        stPlace.tszSection = _rstKey.tszPath;
        Trace(TraceNotice, L"*** CLocalUpdateAgentKey::CreateKey() - _stKey.tszRoot[%s]", _rstKey.tszRoot);
        return stPlace;
    }
    return std::nullopt;
}

void CLocalUpdateAgentKey::ReplacePath(std::wstring& _rtszPath)
{
    Trace(TraceNotice, L"*** CLocalUpdateAgentKey::ReplacePath() - _tszPath [%s]", _rtszPath);
    for (const MacroRow& stMacro : g_aMacro) {
        if (const std::size_t uAt = _rtszPath.find(stMacro.svMacro); uAt != std::wstring::npos) {
            if (const std::wstring tszFolder = stMacro.pfnFolder(); !tszFolder.empty()) {
                _rtszPath.replace(uAt, stMacro.svMacro.size(), String::WithBackslash(tszFolder));
            }
            return;
        }
    }
}

std::uint32_t CLocalUpdateAgentKey::OnAction(const UpdatePlace& _rstPlace, const LocalUpdateEntry& _rstEntry)
{
    using Agent = CLocalUpdateAgentKey;
    static constexpr Action aAction[] = {
        {UpdateWords::ActionCreate, UpdateEffect::Create, &Agent::IsKeyExisted, true, UpdateReason::PlacePresent,
         &Agent::Create},
        {UpdateWords::ActionAppend, UpdateEffect::Append, &Agent::IsEntryExisted, true, UpdateReason::ValuePresent,
         &Agent::Append},
        {UpdateWords::ActionWrite, UpdateEffect::Write, &Agent::IsEntryExisted, true, UpdateReason::ValuePresent,
         &Agent::Write},
        {UpdateWords::ActionRemove, UpdateEffect::Remove, &Agent::IsKeyExisted, false, UpdateReason::PlaceAbsent,
         &Agent::Remove},
    };
    const MethodTrace cTrace(L"CLocalUpdateAgentKey::OnAction()");
    Trace(TraceNotice, L"*** CLocalUpdateAgentKey::OnAction() - _stKey.tszAction [%s]", _rstEntry.tszAction);
    const Frwk::Word* pWord = Frwk::Utility::FindWord(UpdateWords::g_stAction, _rstEntry.tszAction);
    if (pWord == nullptr) {
        Trace(TraceError, L"*** CLocalUpdateAgentKey::OnAction() - specified _stKey.tszAction[%s] was invalid.",
              _rstEntry.tszAction);
        m_stDecision = {UpdateEffect::Refuse, UpdateReason::UnknownAction, ERROR_SUCCESS};
        return cTrace.Leave(Result::g_ulRefused);
    }
    const auto* pAction = std::ranges::find(aAction, pWord->ulValue, &Action::enAction);
    const std::uint32_t ulResult = Guarded(L"CLocalUpdateAgentKey::OnAction()", [&] {
        const bool bExisted = (this->*pAction->pfnIsExisted)(_rstPlace, _rstEntry);
        if (pAction->bSkipPresent ? bExisted && _rstEntry.tszOverWrite != UpdateWords::g_svYes : !bExisted) {
            m_stDecision = {UpdateEffect::Skip, pAction->enNotToDo, ERROR_SUCCESS};
            return Result::g_ulSuccess;
        }
        m_stDecision.enEffect = pAction->enEffect;
        return (this->*pAction->pfnAct)(_rstPlace, _rstEntry);
    });
    if (Result::IsFailure(ulResult)) {
        m_stDecision.enEffect = UpdateEffect::Refuse;
        Trace(TraceError, L"*** CLocalUpdateAgentKey::OnAction() - OnAction() failed().  _stKey.tszAction[%s] [0x%08x]",
              _rstEntry.tszAction, ulResult);
    }
    return cTrace.Leave(ulResult);
}

bool CLocalUpdateAgentKey::IsKeyExisted(const UpdatePlace& _rstPlace, const LocalUpdateEntry&)
{
    return m_rStorage.Exists(_rstPlace);
}

bool CLocalUpdateAgentKey::IsEntryExisted(const UpdatePlace& _rstPlace, const LocalUpdateEntry& _rstEntry)
{
    const TypeRow& rstType = TypeOf(_rstEntry.tszType);
    try { // what cannot be read as that type does not count
        const std::optional<Value> stValue = m_rStorage.Find(_rstPlace, _rstEntry.tszName);
        if (stValue && _rstPlace.IsRegistry()) {
            rstType.pfnCheck(*stValue);
        }
        return stValue.has_value();
    } catch (Storage::Exception* _pError) {
        const Exception::Caught pCaught(_pError);
        return false;
    }
}

std::uint32_t CLocalUpdateAgentKey::Create(const UpdatePlace& _rstPlace, const LocalUpdateEntry& _rstEntry)
{
    return Step(L"CLocalUpdateAgentKey::Create()", [&] {
        if (!_rstPlace.IsRegistry()) {
            m_rStorage.Create(_rstPlace, false);
            return Result::g_ulSuccess;
        }
        UpdatePlace stTarget = _rstPlace;
        if (!_rstEntry.tszName.empty()) {
            stTarget.tszPath = Below(_rstPlace.tszPath, _rstEntry.tszName);
        }
        if (!CreateRegistryKey(std::move(stTarget), _rstEntry.tszAllAccess)) {
            m_stDecision = {UpdateEffect::Skip, UpdateReason::NoAllAccess, ERROR_SUCCESS};
        }
        return Result::g_ulSuccess;
    });
}

/** @return false when the word asks for no key, and none is made */
bool CLocalUpdateAgentKey::CreateRegistryKey(UpdatePlace _stPlace, const std::wstring& _rtszAllAccess)
{
    const bool bAllAccess = _rtszAllAccess == UpdateWords::g_svYes;
    if (!bAllAccess && _rtszAllAccess != UpdateWords::g_svNo) {
        return false;
    }
    if (!bAllAccess) { // in the machine's own view, whatever the item's
        _stPlace.enView = Platform::IsNative64Bit() ? Storage::View64 : Storage::ViewDefault;
    }
    m_rStorage.Create(_stPlace, bAllAccess);
    return true;
}

std::uint32_t CLocalUpdateAgentKey::Write(const UpdatePlace& _rstPlace, const LocalUpdateEntry& _rstEntry)
{
    return Step(L"CLocalUpdateAgentKey::Write()", [&] {
        const TypeRow& rstType = TypeOf(_rstEntry.tszType);
        if (!_rstPlace.IsRegistry()) {
            m_rStorage.Write(_rstPlace, _rstEntry.tszName, Value::Of(_rstEntry.tszValue));
            return Result::g_ulSuccess;
        }
        const Value stValue = rstType.pfnOf(_rstEntry.tszValue); // before the key: all of the entry or nothing
        CreateRegistryKey(_rstPlace, _rstEntry.tszAllAccess);
        m_rStorage.Write(_rstPlace, _rstEntry.tszName, stValue);
        return Result::g_ulSuccess;
    });
}

std::uint32_t CLocalUpdateAgentKey::Append(const UpdatePlace& _rstPlace, const LocalUpdateEntry& _rstEntry)
{
    return Step(L"CLocalUpdateAgentKey::Append()", [&] {
        if (!TypeOf(_rstEntry.tszType).bAppend) {
            Fail(ERROR_INVALID_PARAMETER);
        }
        const std::optional<Value> stPresent = m_rStorage.Find(_rstPlace, _rstEntry.tszName);
        if (!stPresent) {
            return Write(_rstPlace, _rstEntry);
        }
        LocalUpdateEntry stJoined = _rstEntry;
        stJoined.tszValue.insert(0, TextBefore(_rstPlace, _rstEntry, *stPresent));
        return Write(_rstPlace, stJoined);
    });
}

std::uint32_t CLocalUpdateAgentKey::Remove(const UpdatePlace& _rstPlace, const LocalUpdateEntry& _rstEntry)
{
    return Step(L"CLocalUpdateAgentKey::Remove()", [&] {
        if (_rstEntry.tszName.empty()) {
            RemoveSection(_rstPlace);
        } else {
            RemoveEntry(_rstPlace, _rstEntry.tszName);
        }
        return Result::g_ulSuccess;
    });
}

void CLocalUpdateAgentKey::RemoveEntry(const UpdatePlace& _rstPlace, const std::wstring& _rtszName)
{
    Trace(TraceNotice, L"*** CLocalUpdateAgentKey::Remove() - _stEntry.tszName[%s]", _rtszName);
    m_rStorage.RemoveValue(_rstPlace, _rtszName);
}

/** Without recursion: keys may lie deeper in each other than a stack reaches. */
void CLocalUpdateAgentKey::RemoveSection(UpdatePlace _stPlace)
{
    struct Level
    {
        std::vector<std::wstring> vecSection;
        std::size_t uNext;
        std::wstring::size_type uParent; // length of the parent's path
    };
    if (!_stPlace.IsRegistry()) {
        Trace(TraceNotice, L"*** CLocalUpdateAgentKey::RemoveSection() - _stKey.tszTarget[%s]", _stPlace.tszSection);
        m_rStorage.Remove(_stPlace);
        return;
    }
    std::vector<Level> vecLevel;
    vecLevel.push_back({EnumSection(_stPlace), 0, 0});
    while (!vecLevel.empty()) {
        Level& rstLevel = vecLevel.back();
        if (rstLevel.uNext == rstLevel.vecSection.size()) {
            m_rStorage.Remove(_stPlace);
            _stPlace.tszPath.resize(rstLevel.uParent);
            vecLevel.pop_back();
            continue;
        }
        const std::wstring& rtszSection = rstLevel.vecSection[rstLevel.uNext++];
        Trace(TraceNotice, L"*** CLocalUpdateAgentKey::RemoveSection() - section[%s]", rtszSection);
        const std::size_t uParent = _stPlace.tszPath.size();
        _stPlace.tszPath = Below(_stPlace.tszPath, rtszSection);
        vecLevel.push_back({EnumSection(_stPlace), 0, uParent});
    }
}

/** The keys directly below one that is about to be removed. */
std::vector<std::wstring> CLocalUpdateAgentKey::EnumSection(const UpdatePlace& _rstPlace)
{
    Trace(TraceNotice, L"*** CLocalUpdateAgentKey::RemoveSection() - _stKey.tszTarget[%s]", _rstPlace.tszPath);
    std::vector<std::wstring> vecSection = m_rStorage.SubKeys(_rstPlace);
    Trace(TraceNotice, L"*** CLocalUpdateAgentKey::RemoveSection() - Got Sections [%d]",
          static_cast<std::uint32_t>(vecSection.size()));
    return vecSection;
}
