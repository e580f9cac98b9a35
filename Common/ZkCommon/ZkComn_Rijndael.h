#pragma once

#include "ZkComn_AesEngine.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace ZkCommon::Cryptograph {

/**
 * A block cipher that turns a message piece by piece: set up, convert as often as there are pieces, finish. An object
 * serves one message after the other and belongs to one thread at a time.
 */
class SymmetricCipherBase
{
public:
    enum class Direction : std::uint32_t
    {
        Encrypt = 0,
        Decrypt = 1,
    };
    enum class Mode : std::uint32_t
    {
        Ecb = 0, // each block by itself
        Cbc = 1, // each block chained to the one before it
        Cfb = 2, // the cipher as a key stream, fed back a whole block (128 bits) at a time
    };
    using Input = std::span<const std::uint8_t>;
    using Output = std::span<std::uint8_t>;

    SymmetricCipherBase() = default;
    SymmetricCipherBase(const SymmetricCipherBase&) = delete;
    SymmetricCipherBase& operator=(const SymmetricCipherBase&) = delete;
    virtual ~SymmetricCipherBase() = default;

    /**
     * Begins a message, whatever became of the one before.
     * @param _spanVector  the initialisation vector, one block; empty means all zero
     * @param _rulError    13 for a key or vector of another length, 87 for an unknown direction or mode
     */
    virtual bool SetUp(Direction _enDirection, Input _spanKey, Mode _enMode, Input _spanVector,
                       std::uint32_t& _rulError) noexcept = 0;

    /**
     * Turns the whole blocks of what came so far. A message that comes as one piece may be turned in place, with one
     * memory as input and output; else they must not overlap. A failure leaves the message where it was.
     * @param _ruWritten  bytes written to the output
     * @param _rulError   1 before set-up or after the end, 13 for no input, 8 for too small an output
     */
    virtual bool Convert(Input _spanInput, Output _spanOutput, std::size_t& _ruWritten,
                         std::uint32_t& _rulError) noexcept = 0;

    /**
     * Ends the message.
     * @param _ruWritten  bytes written to the output
     * @param _rulError   1 when nothing was converted, 13 for an encrypted message that is no whole number of blocks,
     *                    8 for too small an output, 50 for an unknown mode
     */
    virtual bool Finish(Output _spanOutput, std::size_t& _ruWritten, std::uint32_t& _rulError) noexcept = 0;
};

/**
 * AES with keys of 16, 24 or 32 bytes. Only a message that ends in the middle of a block is padded, with bytes that
 * hold their own number (1 to 15). Decryption drops whatever looks like such a padding (1 to 16 bytes) and reports
 * none that is broken.
 */
class Rijndael final : public SymmetricCipherBase
{
public:
    /** Takes the processor's AES instructions when there are any. */
    Rijndael() noexcept;
    explicit Rijndael(const Aes::Engine& _stEngine) noexcept : m_pEngine(&_stEngine) {}
    ~Rijndael() override;

    bool SetUp(Direction _enDirection, Input _spanKey, Mode _enMode, Input _spanVector,
               std::uint32_t& _rulError) noexcept override;
    bool Convert(Input _spanInput, Output _spanOutput, std::size_t& _ruWritten,
                 std::uint32_t& _rulError) noexcept override;
    bool Finish(Output _spanOutput, std::size_t& _ruWritten, std::uint32_t& _rulError) noexcept override;

    /** Bytes of padding that Finish found at the end of a decrypted message. */
    std::size_t Padding() const noexcept { return m_uPadding; }

private:
    enum class Stage : std::uint32_t
    {
        NotSetUp = 0,
        SetUp = 1,
        Converting = 2,
        Finished = 3,
    };

    bool Transform(const std::uint8_t* _pInput, std::uint8_t* _pOutput, std::size_t _uBlocks) noexcept;
    void TransformCfb(const std::uint8_t* _pInput, std::uint8_t* _pOutput, std::size_t _uBlocks) noexcept;
    bool FinishEncryption(Output _spanOutput, std::size_t& _ruWritten, std::uint32_t& _rulError) noexcept;
    bool FinishDecryption(Output _spanOutput, std::size_t& _ruWritten, std::uint32_t& _rulError) noexcept;
    void Wipe() noexcept;

    const Aes::Engine* m_pEngine;
    Aes::KeySchedule m_stSchedule{};
    Aes::Block m_aChain{};
    Aes::Block m_aBuffer{};
    std::size_t m_uBuffered = 0;
    std::size_t m_uPadding = 0;
    Direction m_enDirection = Direction::Encrypt;
    Mode m_enMode = Mode::Cbc;
    Stage m_enStage = Stage::NotSetUp;
};

} // namespace ZkCommon::Cryptograph
