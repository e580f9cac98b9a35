#pragma once

#include "ZkComn_SourcePlace.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

/**
 * The common library's exceptions. All of them are allocated on the heap and thrown by pointer; whoever catches one
 * owns it and puts it into a Caught at once. Framework code does that in one place, Varnhelt::AtBoundary.
 */
namespace ZkCommon::Exception {

/** Error code of a failure that no system error caused (ERROR_INVALID_HANDLE). */
inline constexpr std::uint32_t g_ulNoSystemError = 6;

class Base
{
public:
    /** _stPlace is the throw site; leave it to its default. */
    explicit Base(std::uint32_t _ulErrorCode, SourcePlace _stPlace = SourcePlace::Here()) noexcept
        : m_ulErrorCode(_ulErrorCode), m_stPlace(_stPlace)
    {}
    Base(const Base&) = delete;
    Base& operator=(const Base&) = delete;
    virtual ~Base() = default;

    std::uint32_t ErrorCode() const noexcept { return m_ulErrorCode; }
    std::uint32_t SourceLine() const noexcept { return m_stPlace.ulLine; }
    /** Path of the throwing source file as the build knows it, relative to the project's root. */
    const char* SourceFile() const noexcept { return m_stPlace.szFile; }

private:
    std::uint32_t m_ulErrorCode;
    SourcePlace m_stPlace;
};

/** Throws a TException for an error code; the place of the call is the throw site. */
template <class TException>
[[noreturn]] void Throw(std::uint32_t _ulError, SourcePlace _stPlace = SourcePlace::Here())
{
    throw new TException(_ulError, _stPlace);
}

/** As Throw, for the result of a system call that gives one; nothing for ERROR_SUCCESS. */
template <class TException, class TError>
void ThrowOn(TError _error, SourcePlace _stPlace = SourcePlace::Here())
{
    if (_error != 0) {
        Throw<TException>(static_cast<std::uint32_t>(_error), _stPlace);
    }
}

/** Owns a caught exception: catch (Base* _pError) { const Caught pCaught(_pError); ... } */
using Caught = std::unique_ptr<const Base>;

} // namespace ZkCommon::Exception

namespace ZkCommon::String {

/** Text could not be formatted or converted. */
class Exception : public ZkCommon::Exception::Base
{
public:
    using Base::Base;
};

} // namespace ZkCommon::String

namespace ZkCommon::Storage {

/** Registry, ini-file and document failures derive from this one. */
class Exception : public ZkCommon::Exception::Base
{
public:
    using Base::Base;
};

/** A registry operation failed; the error code is what the system call returned. */
class RegException : public Exception
{
public:
    using Exception::Exception;
};

/** A document could not be loaded, parsed or written. */
class XmlException : public Exception
{
public:
    /**
     * @param _ulXmlErrorCode  the parser library's error number, 0 when the parser did not fail
     * @param _ulXmlLine       the parser's line at the failure, counted from 1; 0 when it did not get that far
     * @param _sXmlFile        the document's path in the ANSI code page
     */
    explicit XmlException(std::uint32_t _ulErrorCode, std::uint32_t _ulXmlErrorCode = 0, std::uint32_t _ulXmlLine = 0,
                          std::string _sXmlFile = {}, SourcePlace _stPlace = SourcePlace::Here()) noexcept
        : Exception(_ulErrorCode, _stPlace),
          m_ulXmlErrorCode(_ulXmlErrorCode),
          m_ulXmlLine(_ulXmlLine),
          m_sXmlFile(std::move(_sXmlFile))
    {}

    std::uint32_t XmlErrorCode() const noexcept { return m_ulXmlErrorCode; }
    std::uint32_t XmlLine() const noexcept { return m_ulXmlLine; }
    const std::string& XmlFile() const noexcept { return m_sXmlFile; }

private:
    std::uint32_t m_ulXmlErrorCode;
    std::uint32_t m_ulXmlLine;
    std::string m_sXmlFile;
};

} // namespace ZkCommon::Storage

namespace ZkCommon::AccessControl {

/** A security identifier, access list or descriptor could not be built. */
class Exception : public ZkCommon::Exception::Base
{
public:
    using Base::Base;
};

} // namespace ZkCommon::AccessControl
