#include "ZkComn_AesEngine.h"

#include <bit>
#include <cstring>
#include <windows.h>

#include <intrin.h>
#include <utility>
#include <wmmintrin.h>

// GCC and clang generate an instruction set's code only in functions that name it; elsewhere the intrinsics suffice.
#if defined(__GNUC__)
#define ZKCOMN_TARGET_AES __attribute__((target("aes")))
#else
#define ZKCOMN_TARGET_AES
#endif

namespace ZkCommon::Cryptograph::Aes {

namespace {

// The tables come from the field's arithmetic when the code is compiled. Table look-ups show other programs on the same
// processor something about the key by their timing; the keys here are in the module itself, so nothing is lost.

consteval std::uint8_t Multiply(std::uint8_t _uLeft, std::uint8_t _uRight)
{
    unsigned uProduct = 0;
    unsigned uFactor = _uLeft;
    for (unsigned uRest = _uRight; uRest != 0; uRest >>= 1) {
        if ((uRest & 1) != 0) {
            uProduct ^= uFactor;
        }
        uFactor <<= 1;
        if ((uFactor & 0x100) != 0) {
            uFactor ^= 0x11B;
        }
    }
    return static_cast<std::uint8_t>(uProduct);
}

/** The 254th power: the inverse of all but 0, which stays 0. */
consteval std::uint8_t Invert(std::uint8_t _uValue)
{
    std::uint8_t uResult = 1;
    std::uint8_t uPower = _uValue;
    for (int iBit = 1; iBit < 8; ++iBit) {
        uPower = Multiply(uPower, uPower);
        uResult = Multiply(uResult, uPower);
    }
    return uResult;
}

using Bytes = std::array<std::uint8_t, 256>;
using Columns = std::array<std::uint32_t, 256>;

consteval Bytes MakeSubstitution()
{
    Bytes aResult{};
    for (unsigned uValue = 0; uValue < 256; ++uValue) {
        const std::uint8_t uInverse = Invert(static_cast<std::uint8_t>(uValue));
        std::uint8_t uMixed = 0x63;
        for (int iTurn = 0; iTurn < 5; ++iTurn) {
            uMixed = static_cast<std::uint8_t>(uMixed ^ std::rotl(uInverse, iTurn));
        }
        aResult[uValue] = uMixed;
    }
    return aResult;
}

consteval Bytes MakeInverse(const Bytes& _raForward)
{
    Bytes aResult{};
    for (unsigned uValue = 0; uValue < 256; ++uValue) {
        aResult[_raForward[uValue]] = static_cast<std::uint8_t>(uValue);
    }
    return aResult;
}

/** For each byte its substitute times the four factors of a mixed column, the first factor in the lowest byte. */
consteval Columns MakeColumns(const Bytes& _raSubstitution, const std::array<std::uint8_t, 4>& _raFactors)
{
    Columns aResult{};
    for (unsigned uValue = 0; uValue < 256; ++uValue) {
        for (unsigned uRow = 0; uRow < 4; ++uRow) {
            aResult[uValue] |= std::uint32_t{Multiply(_raSubstitution[uValue], _raFactors[uRow])} << (8 * uRow);
        }
    }
    return aResult;
}

constexpr Bytes g_aSubstitute = MakeSubstitution();
constexpr Bytes g_aRestore = MakeInverse(g_aSubstitute);
constexpr Columns g_aMix = MakeColumns(g_aSubstitute, {2, 1, 1, 3});
constexpr Columns g_aUnmix = MakeColumns(g_aRestore, {14, 9, 13, 11});

using State = std::array<std::uint32_t, 4>; // columns; the first row in the lowest byte

State Load(const std::uint8_t* _pBytes) noexcept
{
    State aState;
    std::memcpy(aState.data(), _pBytes, g_uBlock);
    return aState;
}

/**
 * One column of a round: the table's entries for the bytes that shifting the rows brings together. _uStep is 1 when
 * rows shift left and 3 when they shift right.
 */
template <unsigned _uStep, class TTable>
std::uint32_t Column(const TTable& _raTable, const State& _raState, unsigned _uColumn) noexcept
{
    std::uint32_t ulResult = 0;
    for (unsigned uRow = 0; uRow < 4; ++uRow) {
        const std::uint32_t ulSource = _raState[(_uColumn + uRow * _uStep) % 4];
        ulResult ^= std::rotl(std::uint32_t{_raTable[(ulSource >> (8 * uRow)) & 0xFF]}, static_cast<int>(8 * uRow));
    }
    return ulResult;
}

template <unsigned _uStep, class TTable>
State Round(const TTable& _raTable, const State& _raState, const Block& _raKey) noexcept
{
    State aResult = Load(_raKey.data());
    for (unsigned uColumn = 0; uColumn < 4; ++uColumn) {
        aResult[uColumn] ^= Column<_uStep>(_raTable, _raState, uColumn);
    }
    return aResult;
}

template <unsigned _uStep>
void Transform(const Columns& _raMix, const Bytes& _raLast, const KeySchedule& _stSchedule, const std::uint8_t* _pInput,
               std::uint8_t* _pOutput) noexcept
{
    State aState = Load(_pInput);
    const State aFirst = Load(_stSchedule.aRound[0].data());
    for (unsigned uColumn = 0; uColumn < 4; ++uColumn) {
        aState[uColumn] ^= aFirst[uColumn];
    }
    for (std::size_t uRound = 1; uRound < _stSchedule.uRounds; ++uRound) {
        aState = Round<_uStep>(_raMix, aState, _stSchedule.aRound[uRound]);
    }
    aState = Round<_uStep>(_raLast, aState, _stSchedule.aRound[_stSchedule.uRounds]);
    std::memcpy(_pOutput, aState.data(), g_uBlock);
}

void Xor(std::uint8_t* _pTarget, const std::uint8_t* _pOther) noexcept
{
    for (std::size_t uByte = 0; uByte < g_uBlock; ++uByte) {
        _pTarget[uByte] ^= _pOther[uByte];
    }
}

namespace Portable {

void Encrypt(const KeySchedule& _stSchedule, const std::uint8_t* _pInput, std::uint8_t* _pOutput) noexcept
{
    Transform<1>(g_aMix, g_aSubstitute, _stSchedule, _pInput, _pOutput);
}

void Decrypt(const KeySchedule& _stSchedule, const std::uint8_t* _pInput, std::uint8_t* _pOutput) noexcept
{
    Transform<3>(g_aUnmix, g_aRestore, _stSchedule, _pInput, _pOutput);
}

void EncryptCbc(const KeySchedule& _stSchedule, Block& _raChain, const std::uint8_t* _pInput, std::uint8_t* _pOutput,
                std::size_t _uBlocks) noexcept
{
    for (std::size_t uAt = 0; uAt < _uBlocks * g_uBlock; uAt += g_uBlock) {
        Xor(_raChain.data(), _pInput + uAt);
        Encrypt(_stSchedule, _raChain.data(), _raChain.data());
        std::memcpy(_pOutput + uAt, _raChain.data(), g_uBlock);
    }
}

void DecryptCbc(const KeySchedule& _stSchedule, Block& _raChain, const std::uint8_t* _pInput, std::uint8_t* _pOutput,
                std::size_t _uBlocks) noexcept
{
    for (std::size_t uAt = 0; uAt < _uBlocks * g_uBlock; uAt += g_uBlock) {
        Block aInput;
        std::memcpy(aInput.data(), _pInput + uAt, g_uBlock);
        Decrypt(_stSchedule, aInput.data(), _pOutput + uAt);
        Xor(_pOutput + uAt, _raChain.data());
        _raChain = aInput;
    }
}

} // namespace Portable

namespace Processor {

ZKCOMN_TARGET_AES inline __m128i Get(const std::uint8_t* _pBytes) noexcept
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(_pBytes));
}

ZKCOMN_TARGET_AES inline void Put(std::uint8_t* _pBytes, __m128i _value) noexcept
{
    _mm_storeu_si128(reinterpret_cast<__m128i*>(_pBytes), _value);
}

ZKCOMN_TARGET_AES inline __m128i EncryptState(const KeySchedule& _stSchedule, __m128i _state) noexcept
{
    _state = _mm_xor_si128(_state, Get(_stSchedule.aRound[0].data()));
    for (std::size_t uRound = 1; uRound < _stSchedule.uRounds; ++uRound) {
        _state = _mm_aesenc_si128(_state, Get(_stSchedule.aRound[uRound].data()));
    }
    return _mm_aesenclast_si128(_state, Get(_stSchedule.aRound[_stSchedule.uRounds].data()));
}

ZKCOMN_TARGET_AES inline __m128i DecryptState(const KeySchedule& _stSchedule, __m128i _state) noexcept
{
    _state = _mm_xor_si128(_state, Get(_stSchedule.aRound[0].data()));
    for (std::size_t uRound = 1; uRound < _stSchedule.uRounds; ++uRound) {
        _state = _mm_aesdec_si128(_state, Get(_stSchedule.aRound[uRound].data()));
    }
    return _mm_aesdeclast_si128(_state, Get(_stSchedule.aRound[_stSchedule.uRounds].data()));
}

ZKCOMN_TARGET_AES void Encrypt(const KeySchedule& _stSchedule, const std::uint8_t* _pInput,
                               std::uint8_t* _pOutput) noexcept
{
    Put(_pOutput, EncryptState(_stSchedule, Get(_pInput)));
}

ZKCOMN_TARGET_AES void Decrypt(const KeySchedule& _stSchedule, const std::uint8_t* _pInput,
                               std::uint8_t* _pOutput) noexcept
{
    Put(_pOutput, DecryptState(_stSchedule, Get(_pInput)));
}

ZKCOMN_TARGET_AES void EncryptCbc(const KeySchedule& _stSchedule, Block& _raChain, const std::uint8_t* _pInput,
                                  std::uint8_t* _pOutput, std::size_t _uBlocks) noexcept
{
    __m128i chain = Get(_raChain.data());
    for (std::size_t uAt = 0; uAt < _uBlocks * g_uBlock; uAt += g_uBlock) {
        chain = EncryptState(_stSchedule, _mm_xor_si128(Get(_pInput + uAt), chain));
        Put(_pOutput + uAt, chain);
    }
    Put(_raChain.data(), chain);
}

// Several blocks side by side would take less than half the time, which is a few hundredths of a query of 1 MB.
ZKCOMN_TARGET_AES void DecryptCbc(const KeySchedule& _stSchedule, Block& _raChain, const std::uint8_t* _pInput,
                                  std::uint8_t* _pOutput, std::size_t _uBlocks) noexcept
{
    __m128i chain = Get(_raChain.data());
    for (std::size_t uAt = 0; uAt < _uBlocks * g_uBlock; uAt += g_uBlock) {
        const __m128i input = Get(_pInput + uAt);
        Put(_pOutput + uAt, _mm_xor_si128(DecryptState(_stSchedule, input), chain));
        chain = input;
    }
    Put(_raChain.data(), chain);
}

} // namespace Processor

/** Replaces a key word's bytes by their substitutes. */
std::uint32_t Substitute(std::uint32_t _ulWord) noexcept
{
    const State aState{_ulWord, _ulWord, _ulWord, _ulWord};
    return Column<1>(g_aSubstitute, aState, 0);
}

} // namespace

void Expand(std::span<const std::uint8_t> _spanKey, bool _bInverse, KeySchedule& _rstSchedule) noexcept
{
    const std::size_t uKeyWords = _spanKey.size() / 4;
    _rstSchedule.uRounds = uKeyWords + 6;
    const std::size_t uWords = 4 * (_rstSchedule.uRounds + 1);

    std::array<std::uint32_t, 4 * (g_uMaxRounds + 1)> aWord{};
    std::memcpy(aWord.data(), _spanKey.data(), _spanKey.size());
    std::uint32_t ulConstant = 1;
    for (std::size_t uWord = uKeyWords; uWord < uWords; ++uWord) {
        std::uint32_t ulWord = aWord[uWord - 1];
        if (uWord % uKeyWords == 0) {
            ulWord = Substitute(std::rotr(ulWord, 8)) ^ ulConstant;
            ulConstant = (ulConstant << 1) ^ (ulConstant >= 0x80 ? 0x11BU : 0U);
        } else if (uKeyWords == 8 && uWord % 8 == 4) {
            ulWord = Substitute(ulWord);
        }
        aWord[uWord] = aWord[uWord - uKeyWords] ^ ulWord;
    }

    for (std::size_t uRound = 0; uRound <= _rstSchedule.uRounds; ++uRound) {
        const std::size_t uSource = _bInverse ? _rstSchedule.uRounds - uRound : uRound;
        State aKey{aWord[4 * uSource], aWord[4 * uSource + 1], aWord[4 * uSource + 2], aWord[4 * uSource + 3]};
        if (_bInverse && uRound != 0 && uRound != _rstSchedule.uRounds) {
            for (std::uint32_t& rulColumn : aKey) {
                // The table restores a byte before it multiplies, hence the substitution that this takes back.
                const std::uint32_t ulColumn = Substitute(rulColumn);
                rulColumn = Column<1>(g_aUnmix, {ulColumn, ulColumn, ulColumn, ulColumn}, 0);
            }
        }
        std::memcpy(_rstSchedule.aRound[uRound].data(), aKey.data(), g_uBlock);
        ::SecureZeroMemory(aKey.data(), sizeof(aKey));
    }
    ::SecureZeroMemory(aWord.data(), sizeof(aWord));
}

const Engine& PortableEngine() noexcept
{
    static constexpr Engine stPortable{&Portable::Encrypt, &Portable::Decrypt, &Portable::EncryptCbc,
                                       &Portable::DecryptCbc};
    return stPortable;
}

const Engine* ProcessorEngine() noexcept
{
    static constexpr Engine stProcessor{&Processor::Encrypt, &Processor::Decrypt, &Processor::EncryptCbc,
                                        &Processor::DecryptCbc};
    int aInformation[4];
    __cpuid(aInformation, 1);
    constexpr int iAesInstructions = 1 << 25;
    return (aInformation[2] & iAesInstructions) != 0 ? &stProcessor : nullptr;
}

} // namespace ZkCommon::Cryptograph::Aes
