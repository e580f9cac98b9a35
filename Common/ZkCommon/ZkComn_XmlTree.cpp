#include "ZkComn_XmlTree.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <emmintrin.h>
#include <limits>

namespace ZkCommon::Storage {

namespace {

constexpr std::size_t g_uSmallestChunk = 4096;
constexpr std::size_t g_uLargestChunk = 64U << 10; // larger ones cost the heap much more
/** What a document may take whatever its size, and the multiple of its bytes that a larger one may take. */
constexpr std::uint64_t g_ullAlwaysAllowed = 8U << 20;
constexpr std::uint64_t g_ullTimesAllowed = 100;
constexpr wchar_t g_cReplacement = 0xFFFD;

/** Decodes the character at _rpFrom and steps over it; what is no character gives the replacement character. */
char32_t Decode(const unsigned char*& _rpFrom, const unsigned char* _pEnd) noexcept
{
    const unsigned char ucLead = *_rpFrom++;
    if (ucLead < 0x80) {
        return ucLead;
    }
    const int iMore = ucLead >= 0xF0 ? 3 : ucLead >= 0xE0 ? 2 : 1;
    if (ucLead < 0xC0 || ucLead >= 0xF8 || _pEnd - _rpFrom < iMore) {
        return g_cReplacement;
    }
    char32_t cResult = ucLead & (0x3FU >> iMore);
    for (int i = 0; i < iMore; ++i) {
        cResult = (cResult << 6) | (*_rpFrom++ & 0x3FU);
    }
    return cResult > 0x10FFFF ? g_cReplacement : cResult;
}

} // namespace

wchar_t* WidenUtf8(wchar_t* _pTo, const char* _pFrom, std::size_t _uLength) noexcept
{
    const unsigned char* pFrom = reinterpret_cast<const unsigned char*>(_pFrom);
    const unsigned char* pEnd = pFrom + _uLength;
    while (pFrom != pEnd) {
        while (pEnd - pFrom >= 16) {
            const __m128i vecBytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pFrom));
            if (_mm_movemask_epi8(vecBytes) != 0) {
                break;
            }
            const __m128i vecZero = _mm_setzero_si128();
            _mm_storeu_si128(reinterpret_cast<__m128i*>(_pTo), _mm_unpacklo_epi8(vecBytes, vecZero));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(_pTo + 8), _mm_unpackhi_epi8(vecBytes, vecZero));
            pFrom += 16;
            _pTo += 16;
        }
        while (pFrom != pEnd && *pFrom < 0x80) {
            *_pTo++ = static_cast<wchar_t>(*pFrom++);
        }
        // A text of many such characters does not go back to the blocks for each of them.
        while (pFrom != pEnd && *pFrom >= 0x80) {
            const char32_t cCharacter = Decode(pFrom, pEnd);
            if (cCharacter < 0x10000) {
                *_pTo++ = static_cast<wchar_t>(cCharacter);
            } else {
                *_pTo++ = static_cast<wchar_t>(0xD7C0 + (cCharacter >> 10));
                *_pTo++ = static_cast<wchar_t>(0xDC00 + (cCharacter & 0x3FF));
            }
        }
    }
    return _pTo;
}

std::wstring_view TrimXmlBlanks(std::wstring_view _svText, TrimSide _enSide) noexcept
{
    while ((_enSide & TrimEnd) != 0 && !_svText.empty() && IsXmlBlank(_svText.back())) {
        _svText.remove_suffix(1);
    }
    while ((_enSide & TrimBegin) != 0 && !_svText.empty() && IsXmlBlank(_svText.front())) {
        _svText.remove_prefix(1);
    }
    return _svText;
}

struct XmlArena::Chunk
{
    Chunk* pOlder;
    std::size_t uSize;
};

XmlArena::XmlArena(const XmlMemory* _pMemory) noexcept
    : m_pfnAllocate(_pMemory != nullptr ? _pMemory->malloc_fcn : &std::malloc),
      m_pfnFree(_pMemory != nullptr ? _pMemory->free_fcn : &std::free),
      m_uNext(g_uSmallestChunk)
{}

XmlArena::~XmlArena()
{
    while (m_pChunk != nullptr) {
        m_pfnFree(std::exchange(m_pChunk, m_pChunk->pOlder));
    }
}

void XmlArena::Expect(std::uint64_t _ullDocument) noexcept
{
    m_uNext = static_cast<std::size_t>(std::clamp<std::uint64_t>(_ullDocument, g_uSmallestChunk, g_uLargestChunk));
    m_ullLimit = std::max(g_ullAlwaysAllowed, g_ullTimesAllowed * _ullDocument);
}

void XmlArena::Charge(std::uint64_t _ullSize)
{
    if (m_uTotal + _ullSize > m_ullLimit - std::min(m_ullLimit, m_ullCharged)) {
        throw AboveLimit();
    }
    m_ullCharged += _ullSize;
}

std::byte* XmlArena::Grow(const std::byte* _pWritten, std::size_t _uKeep, std::size_t _uSize)
{
    // What grows while it is written gets double the room, so that it moves a few times only.
    const std::size_t uRoom = _uKeep != 0 ? 2 * _uSize : _uSize;
    const std::size_t uSize = std::max(m_uNext, sizeof(Chunk) + uRoom);
    if (m_uTotal + m_ullCharged + uSize > m_ullLimit) {
        throw AboveLimit();
    }
    void* pMemory = m_pfnAllocate(uSize);
    if (pMemory == nullptr) {
        throw std::bad_alloc();
    }
    Chunk* pChunk = new (pMemory) Chunk{m_pChunk, uSize};
    std::byte* pFirst = reinterpret_cast<std::byte*>(pChunk + 1);
    if (_uKeep != 0) {
        std::memcpy(pFirst, _pWritten, _uKeep);
        if (_pWritten == reinterpret_cast<std::byte*>(m_pChunk + 1)) { // nothing else is in the old chunk
            pChunk->pOlder = m_pChunk->pOlder;
            m_uTotal -= m_pChunk->uSize;
            m_pfnFree(m_pChunk);
        }
    }
    m_pChunk = pChunk;
    m_pTop = pFirst;
    m_pEnd = reinterpret_cast<std::byte*>(pChunk) + uSize;
    m_uTotal += uSize;
    m_uNext = std::clamp(m_uTotal / 4, g_uSmallestChunk, g_uLargestChunk);
    return pFirst;
}

void XmlArena::TakeBack(const Mark& _rstMark) noexcept
{
    while (m_pChunk != _rstMark.pChunk) {
        m_uTotal -= m_pChunk->uSize;
        m_pfnFree(std::exchange(m_pChunk, m_pChunk->pOlder));
    }
    m_pTop = _rstMark.pTop;
    m_pEnd = reinterpret_cast<std::byte*>(m_pChunk) + m_pChunk->uSize;
}

XmlTree::XmlTree(const XmlMemory* _pMemory)
    : m_arena(_pMemory), m_arenaOfNames(_pMemory), m_vecName(1, Entry{"", L"", 0, 0}), m_vecSlot(64)
{
    // An unpredictable salt: no document can be crafted so that its names collide.
    LARGE_INTEGER stCounter = {};
    ::QueryPerformanceCounter(&stCounter);
    m_ullSalt =
        static_cast<std::uint64_t>(stCounter.QuadPart) * 0x9E3779B97F4A7C15U ^ reinterpret_cast<std::uintptr_t>(this);
}

XmlText* XmlTree::NewText(std::wstring_view _svText)
{
    if (_svText.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw std::bad_alloc();
    }
    XmlText* pText = m_arena.Take<XmlText>(_svText.size() * sizeof(wchar_t));
    pText->ulLength = static_cast<std::uint32_t>(_svText.size());
    _svText.copy(pText->Chars(), _svText.size());
    return pText;
}

XmlAttributeNode* XmlTree::NewAttribute(std::uint32_t _ulName, std::wstring_view _svValue)
{
    if (_svValue.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw std::bad_alloc();
    }
    XmlAttributeNode* pAttribute = m_arena.Take<XmlAttributeNode>(_svValue.size() * sizeof(wchar_t));
    pAttribute->pNext = nullptr;
    pAttribute->ulName = _ulName;
    pAttribute->stValue.ulLength = static_cast<std::uint32_t>(_svValue.size());
    _svValue.copy(pAttribute->stValue.Chars(), _svValue.size());
    return pAttribute;
}

void XmlTree::Append(XmlNode* _pParent, XmlNode* _pNode)
{
    XmlNode* pLast = _pParent == m_pAppendedTo ? m_pAppended : _pParent->FirstChild();
    while (pLast != nullptr && !pLast->IsLast()) {
        pLast = pLast->Next();
    }
    Append(_pParent, pLast, _pNode);
    m_pAppendedTo = _pParent;
    m_pAppended = _pNode;
}

std::uint32_t XmlTree::InternUnguessed(const char* _szName)
{
    // The name is widened at the arena's top, and stays there only when it turns out to be new.
    const std::size_t uLength = std::strlen(_szName);
    wchar_t* pWide = m_arenaOfNames.Top<wchar_t>(0, uLength * sizeof(wchar_t));
    wchar_t* pWideEnd = WidenUtf8(pWide, _szName, uLength);
    const std::wstring_view svName(pWide, static_cast<std::size_t>(pWideEnd - pWide));
    const std::uint64_t ullHash = HashOf(svName);
    const std::size_t uSlot = SlotOf(svName, ullHash);
    std::uint32_t ulName = m_vecSlot[uSlot];
    if (ulName == 0) {
        m_arenaOfNames.Commit(reinterpret_cast<std::byte*>(pWideEnd));
        ulName = Add(KeepNarrow(_szName), svName, ullHash, uSlot);
    } else if (*m_vecName[ulName].szName == '\0') {
        m_vecName[ulName].szName = KeepNarrow(_szName);
    }
    m_vecName[m_ulBefore].ulFollower = ulName;
    return m_ulBefore = ulName;
}

const char* XmlTree::KeepNarrow(const char* _szName)
{
    const std::size_t uLength = std::strlen(_szName);
    char* szName = m_arenaOfNames.Take<char>(uLength);
    std::memcpy(szName, _szName, uLength + 1);
    return szName;
}

std::uint32_t XmlTree::Intern(std::wstring_view _svName)
{
    const std::uint64_t ullHash = HashOf(_svName);
    const std::size_t uSlot = SlotOf(_svName, ullHash);
    if (m_vecSlot[uSlot] != 0) {
        return m_vecSlot[uSlot];
    }
    wchar_t* pName = m_arenaOfNames.Top<wchar_t>(0, _svName.size() * sizeof(wchar_t));
    m_arenaOfNames.Commit(reinterpret_cast<std::byte*>(pName + _svName.copy(pName, _svName.size())));
    return Add("", {pName, _svName.size()}, ullHash, uSlot);
}

std::uint32_t XmlTree::Add(const char* _szName, std::wstring_view _svName, std::uint64_t _ullHash, std::size_t _uSlot)
{
    const std::uint32_t ulName = static_cast<std::uint32_t>(m_vecName.size());
    m_vecName.push_back({_szName, _svName, _ullHash, g_ulNoName});
    m_vecSlot[_uSlot] = ulName;
    if (m_vecName.size() > m_vecSlot.size() / 2) {
        Rehash();
    }
    return ulName;
}

XmlName XmlTree::Find(std::wstring_view _svName) const noexcept
{
    const std::uint32_t ulName = m_vecSlot[SlotOf(_svName, HashOf(_svName))];
    return ulName != 0 ? XmlName(ulName) : XmlName();
}

std::uint64_t XmlTree::HashOf(std::wstring_view _svName) const noexcept
{
    std::uint64_t ullHash = m_ullSalt;
    for (const wchar_t c : _svName) {
        ullHash = (ullHash ^ c) * 0x100000001B3U;
        ullHash ^= ullHash >> 29;
    }
    return ullHash;
}

std::size_t XmlTree::SlotOf(std::wstring_view _svName, std::uint64_t _ullHash) const noexcept
{
    const std::size_t uMask = m_vecSlot.size() - 1;
    std::size_t uSlot = static_cast<std::size_t>(_ullHash ^ _ullHash >> 32) & uMask;
    while (m_vecSlot[uSlot] != 0 && m_vecName[m_vecSlot[uSlot]].svName != _svName) {
        uSlot = (uSlot + 1) & uMask;
    }
    return uSlot;
}

void XmlTree::Rehash()
{
    std::vector<std::uint32_t> vecSlot(m_vecSlot.size() * 2);
    m_vecSlot.swap(vecSlot);
    for (std::uint32_t ulName = 1; ulName < m_vecName.size(); ++ulName) {
        m_vecSlot[SlotOf(m_vecName[ulName].svName, m_vecName[ulName].ullHash)] = ulName;
    }
}

} // namespace ZkCommon::Storage
