#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/** The AES block transformation (FIPS-197), as the processor offers it and in portable code. */
namespace ZkCommon::Cryptograph::Aes {

inline constexpr std::size_t g_uBlock = 16;
inline constexpr std::size_t g_uMaxRounds = 14;

using Block = std::array<std::uint8_t, g_uBlock>;

/** Round keys in the order of their use. Both engines read the same bytes. */
struct alignas(16) KeySchedule
{
    std::array<Block, g_uMaxRounds + 1> aRound;
    std::size_t uRounds;
};

/** _spanKey has 16, 24 or 32 bytes. With _bInverse the schedule is that of the equivalent inverse cipher. */
void Expand(std::span<const std::uint8_t> _spanKey, bool _bInverse, KeySchedule& _rstSchedule) noexcept;

/**
 * One way to compute AES. The chained operations take whole blocks and leave the last ciphertext block in the chaining
 * block; their input and output are the same memory or do not overlap. All of them are thread-safe.
 */
struct Engine
{
    using BlockFunction = void (*)(const KeySchedule&, const std::uint8_t* _pInput, std::uint8_t* _pOutput) noexcept;
    using ChainFunction = void (*)(const KeySchedule&, Block& _raChain, const std::uint8_t* _pInput,
                                   std::uint8_t* _pOutput, std::size_t _uBlocks) noexcept;

    BlockFunction pEncrypt;
    BlockFunction pDecrypt; // with an inverse schedule
    ChainFunction pEncryptCbc;
    ChainFunction pDecryptCbc; // with an inverse schedule
};

/** Table code that runs everywhere. */
const Engine& PortableEngine() noexcept;

/** The processor's own AES instructions; null when it has none. */
const Engine* ProcessorEngine() noexcept;

} // namespace ZkCommon::Cryptograph::Aes
