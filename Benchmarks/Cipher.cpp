// The cipher against libgcrypt on the same bytes: a message of one megabyte from set-up to finish.

#include "ZkComn_Rijndael.h"

#include <array>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <vector>

// Before gcrypt.h, which brings in the system's headers in an order of its own.
#include <winsock2.h>

#include <gcrypt.h>

namespace {

using ZkCommon::Cryptograph::Rijndael;

constexpr std::size_t g_uMessage = std::size_t{1} << 20;
constexpr std::array<std::uint8_t, 16> g_aKey{'a', ' ', 'k', 'e', 'y', ' ', 'f', 'o',
                                              'r', ' ', 's', 'p', 'e', 'e', 'd', '.'};

void OurCipher(benchmark::State& _rState, Rijndael::Direction _enDirection)
{
    const std::vector<std::uint8_t> vecInput(g_uMessage, 0x5A);
    std::vector<std::uint8_t> vecOutput(g_uMessage);
    Rijndael stCipher;
    for (auto _ : _rState) {
        std::uint32_t ulError = 0;
        std::size_t uConverted = 0;
        std::size_t uFinished = 0;
        const bool bDone = stCipher.SetUp(_enDirection, g_aKey, Rijndael::Mode::Cbc, {}, ulError) &&
                           stCipher.Convert(vecInput, vecOutput, uConverted, ulError) &&
                           stCipher.Finish(std::span(vecOutput).subspan(uConverted), uFinished, ulError);
        if (!bDone) {
            _rState.SkipWithError("the conversion failed");
        }
        benchmark::ClobberMemory();
    }
    _rState.SetBytesProcessed(_rState.iterations() * static_cast<std::int64_t>(g_uMessage));
}

void Gcrypt(benchmark::State& _rState, Rijndael::Direction _enDirection)
{
    ::gcry_check_version(nullptr);
    ::gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
    ::gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
    const std::vector<std::uint8_t> vecInput(g_uMessage, 0x5A);
    std::vector<std::uint8_t> vecOutput(g_uMessage);
    constexpr std::array<std::uint8_t, 16> aVector{};
    for (auto _ : _rState) {
        gcry_cipher_hd_t hCipher = nullptr;
        ::gcry_cipher_open(&hCipher, GCRY_CIPHER_AES128, GCRY_CIPHER_MODE_CBC, 0);
        ::gcry_cipher_setkey(hCipher, g_aKey.data(), g_aKey.size());
        ::gcry_cipher_setiv(hCipher, aVector.data(), aVector.size());
        const auto pOperation =
            _enDirection == Rijndael::Direction::Encrypt ? &::gcry_cipher_encrypt : &::gcry_cipher_decrypt;
        if (pOperation(hCipher, vecOutput.data(), vecOutput.size(), vecInput.data(), vecInput.size()) != 0) {
            _rState.SkipWithError("the conversion failed");
        }
        ::gcry_cipher_close(hCipher);
        benchmark::ClobberMemory();
    }
    _rState.SetBytesProcessed(_rState.iterations() * static_cast<std::int64_t>(g_uMessage));
}

BENCHMARK_CAPTURE(OurCipher, decrypt, Rijndael::Direction::Decrypt)->Name("decrypt-1m/candidate");
BENCHMARK_CAPTURE(Gcrypt, decrypt, Rijndael::Direction::Decrypt)->Name("decrypt-1m/floor");
BENCHMARK_CAPTURE(OurCipher, encrypt, Rijndael::Direction::Encrypt)->Name("encrypt-1m/candidate");
BENCHMARK_CAPTURE(Gcrypt, encrypt, Rijndael::Direction::Encrypt)->Name("encrypt-1m/floor");

} // namespace
