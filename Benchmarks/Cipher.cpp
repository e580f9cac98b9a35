// The cipher against libgcrypt on the same bytes: a message from set-up to finish.

#include "Measure.h"
#include "ZkComn_Rijndael.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

// Before gcrypt.h, which brings in the system's headers in an order of its own.
#include <winsock2.h>

#include <gcrypt.h>

namespace {

using ZkCommon::Cryptograph::Rijndael;

constexpr std::array<std::uint8_t, 16> g_aKey{'a', ' ', 'k', 'e', 'y', ' ', 'f', 'o',
                                              'r', ' ', 's', 'p', 'e', 'e', 'd', '.'};

struct Message
{
    explicit Message(std::size_t _uSize) : vecInput(_uSize, 0x5A), vecOutput(_uSize) {}

    std::vector<std::uint8_t> vecInput;
    std::vector<std::uint8_t> vecOutput;
};

bool Ours(Message& _rMessage, Rijndael::Direction _enDirection)
{
    Rijndael stCipher;
    std::uint32_t ulError = 0;
    std::size_t uConverted = 0;
    std::size_t uFinished = 0;
    return stCipher.SetUp(_enDirection, g_aKey, Rijndael::Mode::Cbc, {}, ulError) &&
           stCipher.Convert(_rMessage.vecInput, _rMessage.vecOutput, uConverted, ulError) &&
           stCipher.Finish(std::span(_rMessage.vecOutput).subspan(uConverted), uFinished, ulError);
}

bool Gcrypt(Message& _rMessage, Rijndael::Direction _enDirection)
{
    constexpr std::array<std::uint8_t, 16> aVector{};
    gcry_cipher_hd_t hCipher = nullptr;
    ::gcry_cipher_open(&hCipher, GCRY_CIPHER_AES128, GCRY_CIPHER_MODE_CBC, 0);
    ::gcry_cipher_setkey(hCipher, g_aKey.data(), g_aKey.size());
    ::gcry_cipher_setiv(hCipher, aVector.data(), aVector.size());
    const auto pOperation =
        _enDirection == Rijndael::Direction::Encrypt ? &::gcry_cipher_encrypt : &::gcry_cipher_decrypt;
    const bool bDone = pOperation(hCipher, _rMessage.vecOutput.data(), _rMessage.vecOutput.size(),
                                  _rMessage.vecInput.data(), _rMessage.vecInput.size()) == 0;
    ::gcry_cipher_close(hCipher);
    return bDone;
}

void AddCipher(const char* _szName, std::size_t _uSize, Rijndael::Direction _enDirection)
{
    Bench::Add(_szName, [=] {
        ::gcry_check_version(nullptr);
        ::gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
        ::gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
        const auto pMessage = std::make_shared<Message>(_uSize);
        return Bench::Ways{[=](Bench::Clock&) { return Ours(*pMessage, _enDirection); },
                           {[=](Bench::Clock&) { return Gcrypt(*pMessage, _enDirection); }}};
    });
}

[[maybe_unused]] const bool g_bAdded = [] {
    AddCipher("decrypt-20k", 20 << 10, Rijndael::Direction::Decrypt);
    AddCipher("decrypt-1m", 1 << 20, Rijndael::Direction::Decrypt);
    AddCipher("encrypt-20k", 20 << 10, Rijndael::Direction::Encrypt);
    AddCipher("encrypt-1m", 1 << 20, Rijndael::Direction::Encrypt);
    return true;
}();

} // namespace
