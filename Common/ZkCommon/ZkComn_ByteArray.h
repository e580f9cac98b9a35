#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <utility>
#include <windows.h>

namespace ZkCommon {

/**
 * A fixed run of bytes that is wiped before it is given back: for keys, plaintext and whole files. After it there is room
 * for g_uRoom bytes more, in which a cipher pads it. Move-only; an object belongs to one thread at a time.
 */
class ByteArray
{
public:
    static constexpr std::size_t g_uRoom = 16;

    ByteArray() noexcept = default;
    ByteArray(ByteArray&& _rOther) noexcept
        : m_pBytes(std::move(_rOther.m_pBytes)), m_uSize(std::exchange(_rOther.m_uSize, 0))
    {}
    ByteArray& operator=(ByteArray&& _rOther) noexcept
    {
        if (this != &_rOther) {
            Wipe();
            m_pBytes = std::move(_rOther.m_pBytes);
            m_uSize = std::exchange(_rOther.m_uSize, 0);
        }
        return *this;
    }
    ~ByteArray() { Wipe(); }

    /** Becomes _uSize bytes of any value. @return false, and empty, when memory runs out */
    [[nodiscard]] bool Allocate(std::size_t _uSize) noexcept
    {
        Wipe();
        m_uSize = 0;
        m_pBytes.reset(_uSize <= PTRDIFF_MAX - g_uRoom ? new (std::nothrow) std::uint8_t[_uSize + g_uRoom] : nullptr);
        if (m_pBytes == nullptr) {
            return false;
        }
        m_uSize = _uSize;
        return true;
    }

    /** Becomes a copy of the bytes. @return false, and empty, when memory runs out */
    [[nodiscard]] bool Assign(std::span<const std::byte> _spanBytes) noexcept
    {
        const bool bDone = Allocate(_spanBytes.size());
        if (bDone && !_spanBytes.empty()) {
            std::memcpy(m_pBytes.get(), _spanBytes.data(), _spanBytes.size());
        }
        return bDone;
    }

    std::uint8_t* Data() noexcept { return m_pBytes.get(); }
    const std::uint8_t* Data() const noexcept { return m_pBytes.get(); }
    std::size_t Size() const noexcept { return m_uSize; }
    std::span<std::uint8_t> Bytes() noexcept { return {Data(), m_uSize}; }
    std::span<const std::uint8_t> Bytes() const noexcept { return {Data(), m_uSize}; }
    std::span<std::uint8_t> BytesAndRoom() noexcept { return {Data(), Data() != nullptr ? m_uSize + g_uRoom : 0}; }
    std::span<const std::uint8_t> BytesAndRoom() const noexcept
    {
        return {Data(), Data() != nullptr ? m_uSize + g_uRoom : 0};
    }

private:
    void Wipe() noexcept
    {
        if (m_pBytes != nullptr) {
            ::SecureZeroMemory(m_pBytes.get(), m_uSize + g_uRoom);
        }
    }

    std::unique_ptr<std::uint8_t[]> m_pBytes;
    std::size_t m_uSize = 0;
};

} // namespace ZkCommon
