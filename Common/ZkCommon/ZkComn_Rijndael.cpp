#include "ZkComn_Rijndael.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <windows.h>

namespace ZkCommon::Cryptograph {

namespace {

using Aes::g_uBlock;

bool Fail(std::uint32_t _ulCode, std::uint32_t& _rulError) noexcept
{
    _rulError = _ulCode;
    return false;
}

/** How many bytes at the end of a block are its padding. */
std::size_t PaddingOf(const Aes::Block& _raBlock) noexcept
{
    const std::uint8_t uCount = _raBlock.back();
    if (uCount > g_uBlock) {
        return 0;
    }
    const bool bAllEqual =
        std::all_of(_raBlock.end() - uCount, _raBlock.end(), [uCount](std::uint8_t _u) { return _u == uCount; });
    return bAllEqual ? uCount : 0;
}

/**
 * Chosen once: in a virtual machine asking the processor costs more than decrypting a small document. Threads that come
 * first together choose the same; the guard of a local static would leave handles behind when the module is unloaded.
 */
const Aes::Engine& BestEngine() noexcept
{
    static constinit std::atomic<const Aes::Engine*> s_pEngine = nullptr;
    const Aes::Engine* pEngine = s_pEngine.load(std::memory_order_relaxed);
    if (pEngine == nullptr) {
        const Aes::Engine* pProcessor = Aes::ProcessorEngine();
        pEngine = pProcessor != nullptr ? pProcessor : &Aes::PortableEngine();
        s_pEngine.store(pEngine, std::memory_order_relaxed);
    }
    return *pEngine;
}

} // namespace

Rijndael::Rijndael() noexcept : Rijndael(BestEngine()) {}

Rijndael::~Rijndael()
{
    Wipe();
}

bool Rijndael::SetUp(Direction _enDirection, Input _spanKey, Mode _enMode, Input _spanVector,
                     std::uint32_t& _rulError) noexcept
{
    Wipe();
    m_enStage = Stage::NotSetUp;
    m_uPadding = 0;
    if (_enDirection > Direction::Decrypt || _enMode > Mode::Cfb) {
        return Fail(ERROR_INVALID_PARAMETER, _rulError);
    }
    if (_spanKey.size() != 16 && _spanKey.size() != 24 && _spanKey.size() != 32) {
        return Fail(ERROR_INVALID_DATA, _rulError);
    }
    if (!_spanVector.empty() && _spanVector.size() != g_uBlock) {
        return Fail(ERROR_INVALID_DATA, _rulError);
    }
    m_enDirection = _enDirection;
    m_enMode = _enMode;
    // A key stream is made by encryption in either direction.
    const bool bInverse = _enDirection == Direction::Decrypt && _enMode != Mode::Cfb;
    Aes::Expand(_spanKey, bInverse, m_stSchedule);
    std::copy(_spanVector.begin(), _spanVector.end(), m_aChain.begin());
    m_enStage = Stage::SetUp;
    return true;
}

bool Rijndael::Convert(Input _spanInput, Output _spanOutput, std::size_t& _ruWritten, std::uint32_t& _rulError) noexcept
{
    _ruWritten = 0;
    if (m_enStage != Stage::SetUp && m_enStage != Stage::Converting) {
        return Fail(ERROR_INVALID_FUNCTION, _rulError);
    }
    if (_spanInput.empty()) {
        return Fail(ERROR_INVALID_DATA, _rulError);
    }
    // Decryption holds the last block back, since it may carry the padding; encryption holds none.
    const std::size_t uHeld = m_enDirection == Direction::Decrypt ? 1 : 0;
    const std::size_t uBlocks = (m_uBuffered + _spanInput.size() - uHeld) / g_uBlock;
    if (uBlocks > _spanOutput.size() / g_uBlock) {
        return Fail(ERROR_NOT_ENOUGH_MEMORY, _rulError);
    }
    m_enStage = Stage::Converting;

    const std::uint8_t* pInput = _spanInput.data();
    std::size_t uLeft = _spanInput.size();
    const auto TakeToBuffer = [&](std::size_t _uCount) {
        std::memcpy(m_aBuffer.data() + m_uBuffered, pInput, _uCount);
        m_uBuffered += _uCount;
        pInput += _uCount;
        uLeft -= _uCount;
    };
    std::size_t uDone = 0;
    if (uBlocks != 0 && m_uBuffered != 0) {
        TakeToBuffer(g_uBlock - m_uBuffered);
        Transform(m_aBuffer.data(), _spanOutput.data(), 1);
        m_uBuffered = 0;
        uDone = 1;
    }
    if (uDone < uBlocks) {
        const std::size_t uRest = uBlocks - uDone;
        Transform(pInput, _spanOutput.data() + uDone * g_uBlock, uRest);
        pInput += uRest * g_uBlock;
        uLeft -= uRest * g_uBlock;
    }
    TakeToBuffer(uLeft);
    _ruWritten = uBlocks * g_uBlock;
    return true;
}

bool Rijndael::Finish(Output _spanOutput, std::size_t& _ruWritten, std::uint32_t& _rulError) noexcept
{
    _ruWritten = 0;
    if (m_enStage != Stage::Converting) {
        return Fail(ERROR_INVALID_FUNCTION, _rulError);
    }
    const bool bDone = m_enDirection == Direction::Encrypt ? FinishEncryption(_spanOutput, _ruWritten, _rulError)
                                                           : FinishDecryption(_spanOutput, _ruWritten, _rulError);
    if (bDone) {
        Wipe();
        m_enStage = Stage::Finished;
    }
    return bDone;
}

bool Rijndael::FinishEncryption(Output _spanOutput, std::size_t& _ruWritten, std::uint32_t& _rulError) noexcept
{
    if (m_uBuffered == 0) {
        return true; // a whole number of blocks gets no padding
    }
    if (_spanOutput.size() < g_uBlock) {
        return Fail(ERROR_NOT_ENOUGH_MEMORY, _rulError);
    }
    const std::size_t uMissing = g_uBlock - m_uBuffered;
    std::memset(m_aBuffer.data() + m_uBuffered, static_cast<int>(uMissing), uMissing);
    if (!Transform(m_aBuffer.data(), _spanOutput.data(), 1)) {
        return Fail(ERROR_NOT_SUPPORTED, _rulError);
    }
    _ruWritten = g_uBlock;
    return true;
}

bool Rijndael::FinishDecryption(Output _spanOutput, std::size_t& _ruWritten, std::uint32_t& _rulError) noexcept
{
    if (m_uBuffered != g_uBlock) {
        return Fail(ERROR_INVALID_DATA, _rulError);
    }
    const Aes::Block aChain = m_aChain;
    Aes::Block aPlain;
    if (!Transform(m_aBuffer.data(), aPlain.data(), 1)) {
        return Fail(ERROR_NOT_SUPPORTED, _rulError);
    }
    const std::size_t uPadding = PaddingOf(aPlain);
    const std::size_t uKept = g_uBlock - uPadding;
    const bool bFits = uKept <= _spanOutput.size();
    if (bFits) {
        std::copy_n(aPlain.begin(), uKept, _spanOutput.begin());
        m_uPadding = uPadding;
        _ruWritten = uKept;
    } else {
        m_aChain = aChain; // the caller may come again with more room
    }
    ::SecureZeroMemory(aPlain.data(), aPlain.size());
    return bFits || Fail(ERROR_NOT_ENOUGH_MEMORY, _rulError);
}

bool Rijndael::Transform(const std::uint8_t* _pInput, std::uint8_t* _pOutput, std::size_t _uBlocks) noexcept
{
    const bool bEncrypt = m_enDirection == Direction::Encrypt;
    switch (m_enMode) {
    case Mode::Ecb:
        for (std::size_t uAt = 0; uAt < _uBlocks * g_uBlock; uAt += g_uBlock) {
            (bEncrypt ? m_pEngine->pEncrypt : m_pEngine->pDecrypt)(m_stSchedule, _pInput + uAt, _pOutput + uAt);
        }
        return true;
    case Mode::Cbc:
        (bEncrypt ? m_pEngine->pEncryptCbc : m_pEngine->pDecryptCbc)(m_stSchedule, m_aChain, _pInput, _pOutput,
                                                                     _uBlocks);
        return true;
    case Mode::Cfb:
        TransformCfb(_pInput, _pOutput, _uBlocks);
        return true;
    }
    return false;
}

void Rijndael::TransformCfb(const std::uint8_t* _pInput, std::uint8_t* _pOutput, std::size_t _uBlocks) noexcept
{
    Aes::Block aStream;
    for (std::size_t uAt = 0; uAt < _uBlocks * g_uBlock; uAt += g_uBlock) {
        m_pEngine->pEncrypt(m_stSchedule, m_aChain.data(), aStream.data());
        for (std::size_t uByte = 0; uByte < g_uBlock; ++uByte) {
            const std::uint8_t uInput = _pInput[uAt + uByte];
            const std::uint8_t uOutput = uInput ^ aStream[uByte];
            _pOutput[uAt + uByte] = uOutput;
            m_aChain[uByte] = m_enDirection == Direction::Encrypt ? uOutput : uInput;
        }
    }
    ::SecureZeroMemory(aStream.data(), aStream.size());
}

void Rijndael::Wipe() noexcept
{
    ::SecureZeroMemory(&m_stSchedule, sizeof(m_stSchedule));
    ::SecureZeroMemory(m_aChain.data(), m_aChain.size());
    ::SecureZeroMemory(m_aBuffer.data(), m_aBuffer.size());
    m_uBuffered = 0;
}

} // namespace ZkCommon::Cryptograph
