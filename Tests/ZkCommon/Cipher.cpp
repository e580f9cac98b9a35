#include "ZkComn_Rijndael.h"

#include <algorithm>
#include <gmock/gmock-more-matchers.h>
#include <random>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include <winsock2.h>

#include <gcrypt.h>

using namespace ZkCommon::Cryptograph;

using Answers = std::vector<std::string>;

namespace {

using Bytes = std::vector<std::uint8_t>;
using Direction = Rijndael::Direction;
using Mode = Rijndael::Mode;

std::vector<const Aes::Engine*> Engines()
{
    std::vector<const Aes::Engine*> vecEngines{&Aes::PortableEngine(), Aes::ProcessorEngine()};
    std::erase(vecEngines, nullptr);
    return vecEngines;
}

constexpr std::size_t g_uInPlace = SIZE_MAX;

/** A whole message, handed over in pieces of _uPiece bytes; g_uInPlace: in one piece that is turned where it lies. */
Bytes Process(const Aes::Engine& _stEngine, Direction _enDirection, Mode _enMode, const Bytes& _vecKey,
              const Bytes& _vecVector, const Bytes& _vecInput, std::size_t _uPiece = g_uInPlace)
{
    Rijndael cCipher(_stEngine);
    std::uint32_t ulError = 0;
    EXPECT_TRUE(cCipher.SetUp(_enDirection, _vecKey, _enMode, _vecVector, ulError)) << ulError;
    Bytes vecOutput = _vecInput;
    vecOutput.resize(_vecInput.size() + 16);
    std::span<std::uint8_t> spanLeft(vecOutput);
    std::size_t uWritten = 0;
    std::span<const std::uint8_t> spanInput(_uPiece == g_uInPlace ? vecOutput : _vecInput);
    for (spanInput = spanInput.first(_vecInput.size()); !spanInput.empty();) {
        const std::size_t uPiece = std::min(_uPiece, spanInput.size());
        EXPECT_TRUE(cCipher.Convert(spanInput.first(uPiece), spanLeft, uWritten, ulError)) << ulError;
        spanInput = spanInput.subspan(uPiece);
        spanLeft = spanLeft.subspan(uWritten);
    }
    EXPECT_TRUE(cCipher.Finish(spanLeft, uWritten, ulError)) << ulError;
    vecOutput.resize(vecOutput.size() - spanLeft.size() + uWritten);
    return vecOutput;
}

/** What libgcrypt makes of whole blocks. */
Bytes Reference(Mode _enMode, const Bytes& _vecKey, const Bytes& _vecVector, Bytes _vecBlocks)
{
    EXPECT_NE(::gcry_check_version(nullptr), nullptr);
    ::gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
    ::gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
    constexpr int aAlgorithm[] = {GCRY_CIPHER_AES128, GCRY_CIPHER_AES192, GCRY_CIPHER_AES256};
    constexpr int aMode[] = {GCRY_CIPHER_MODE_ECB, GCRY_CIPHER_MODE_CBC, GCRY_CIPHER_MODE_CFB};
    gcry_cipher_hd_t hCipher = nullptr;
    EXPECT_EQ(::gcry_cipher_open(&hCipher, aAlgorithm[_vecKey.size() / 8 - 2], aMode[static_cast<int>(_enMode)], 0),
              0U);
    EXPECT_EQ(::gcry_cipher_setkey(hCipher, _vecKey.data(), _vecKey.size()), 0U);
    EXPECT_EQ(::gcry_cipher_setiv(hCipher, _vecVector.data(), _vecVector.size()), 0U);
    EXPECT_EQ(::gcry_cipher_encrypt(hCipher, _vecBlocks.data(), _vecBlocks.size(), nullptr, 0), 0U); // in place
    ::gcry_cipher_close(hCipher);
    return _vecBlocks;
}

} // namespace

TEST(Rijndael, AgreesWithAnIndependentImplementationHoweverTheMessageIsCut)
{
    std::mt19937 cRandom(20);
    const auto Random = [&](std::size_t _uSize) {
        Bytes vecBytes(_uSize);
        std::ranges::generate(vecBytes, [&] { return static_cast<std::uint8_t>(cRandom()); });
        return vecBytes;
    };
    for (std::size_t uRound = 0; uRound < 400; ++uRound) {
        const Mode enMode = static_cast<Mode>(uRound % 3);
        const Bytes vecKey = Random(16 + 8 * (uRound / 3 % 3));
        const Bytes vecVector = Random(16);
        Bytes vecPlain = Random(1 + uRound);
        vecPlain.back() |= 0x20; // never taken for padding
        const std::size_t uPiece = 1 + cRandom() % 80;
        const std::size_t uPadding = (16 - vecPlain.size() % 16) % 16;
        Bytes vecPadded = vecPlain;
        vecPadded.resize(vecPlain.size() + uPadding, static_cast<std::uint8_t>(uPadding));
        const Bytes vecCipher = Reference(enMode, vecKey, vecVector, vecPadded);
        SCOPED_TRACE(uRound);
        for (const Aes::Engine* pEngine : Engines()) {
            for (const std::size_t uCut : {uPiece, g_uInPlace}) {
                ASSERT_EQ(Process(*pEngine, Direction::Encrypt, enMode, vecKey, vecVector, vecPlain, uCut), vecCipher);
                ASSERT_EQ(Process(*pEngine, Direction::Decrypt, enMode, vecKey, vecVector, vecCipher, uCut), vecPlain);
            }
        }
    }
}

TEST(Rijndael, DropsWhatLooksLikePaddingAndNothingElse)
{
    const std::tuple<int, std::string, std::size_t> aRows[] = {
        {__LINE__, std::string(1, '\1'), 1},
        {__LINE__, "\1\2\2", 2},
        {__LINE__, "\3\2\1", 1},
        {__LINE__, "\1\3\3", 0},
        {__LINE__, std::string(15, '\17'), 15},
        {__LINE__, std::string(16, '\20'), 16},
        {__LINE__, std::string(15, '\20'), 0},
        {__LINE__, std::string(17, '\21'), 0},
        {__LINE__, std::string(16, '\0'), 0},
    };
    const Bytes vecKey(16, 7);
    for (const auto& [iLine, sEnd, uDropped] : aRows) {
        Bytes vecPlain(48 - sEnd.size(), 'x');
        vecPlain.insert(vecPlain.end(), sEnd.begin(), sEnd.end());
        const Bytes vecCipher = Reference(Mode::Cbc, vecKey, Bytes(16), vecPlain);
        vecPlain.resize(vecPlain.size() - uDropped);
        EXPECT_EQ(Process(Aes::PortableEngine(), Direction::Decrypt, Mode::Cbc, vecKey, {}, vecCipher), vecPlain)
            << iLine;
    }
}

TEST(Rijndael, RefusesWrongSetUpsWrongOrderAndOutputsTooSmall)
{
    const Bytes vecData(40);
    Bytes vecOutput(64, 0xEE);
    std::uint32_t ulError = 0;
    std::size_t uWritten = 0;
    Rijndael cCipher;
    // The bytes that a call wrote, or its error.
    const auto Answer = [&](bool _bDone) {
        return _bDone ? std::to_string(uWritten) : "error " + std::to_string(ulError);
    };
    const auto SetUp = [&](Direction _enDirection, std::size_t _uKey = 16, Mode _enMode = Mode::Cbc,
                           std::size_t _uVector = 16) {
        uWritten = 0;
        return Answer(cCipher.SetUp(_enDirection, Bytes(_uKey), _enMode, Bytes(_uVector), ulError));
    };
    const auto Convert = [&](std::size_t _uLength, std::size_t _uCapacity) {
        return Answer(cCipher.Convert(std::span(vecData).first(_uLength), std::span(vecOutput).first(_uCapacity),
                                      uWritten, ulError));
    };
    const auto Finish = [&](std::size_t _uCapacity) {
        return Answer(cCipher.Finish(std::span(vecOutput).first(_uCapacity), uWritten, ulError));
    };
    EXPECT_EQ((std::vector{SetUp(Direction::Encrypt, 15), SetUp(Direction::Encrypt, 33),
                           SetUp(Direction::Encrypt, 16, Mode{3}), SetUp(Direction::Encrypt),
                           SetUp(Direction::Encrypt, 16, Mode::Cbc, 15), Convert(16, 16)}),
              Answers({"error 13", "error 13", "error 87", "0", "error 13", "error 1"})); // it revokes the one before

    EXPECT_EQ((std::vector{SetUp(Direction::Encrypt), Finish(16), Convert(0, 64), Convert(40, 31)}),
              Answers({"0", "error 1", "error 13", "error 8"}));
    EXPECT_EQ(uWritten, 0U);
    EXPECT_EQ(vecOutput, Bytes(64, 0xEE));
    EXPECT_EQ((std::vector{Convert(40, 32), Finish(15), Finish(16), Finish(16), Convert(16, 16)}),
              Answers({"32", "error 8", "16", "error 1", "error 1"}));

    EXPECT_EQ((std::vector{SetUp(Direction::Decrypt), Convert(40, 32), Finish(16)}), Answers({"0", "32", "error 13"}));
    EXPECT_EQ((std::vector{SetUp(Direction::Decrypt), Convert(32, 16), Finish(0), Finish(16)}),
              Answers({"0", "16", "error 8", "16"})); // it may be tried again
    vecOutput.resize(16);
    EXPECT_EQ(Process(Aes::PortableEngine(), Direction::Decrypt, Mode::Cbc, Bytes(16), {}, Bytes(16)), vecOutput);
}
