#pragma once

#include <cstddef>
#include <cstdint>

/// The part of the VISA library's interface (VPP-4.3) that a link needs.
namespace host::visa {

#ifdef _WIN32
#define VISA_CALL __stdcall  // says something on 32-bit Windows only
#else
#define VISA_CALL
#endif

using Status = std::int32_t;  // below 0: an error
using Object = std::uint32_t;
using Attribute = std::uint32_t;
using AttributeState = std::uintptr_t;

constexpr Status Error(std::uint32_t code) { return static_cast<Status>(0xBFFF0000U + code); }

inline constexpr Status EndReceived = 0, CountReached = 0x3FFF0006;
inline constexpr Status NoSuchObject = Error(0x0E), NoSuchResource = Error(0x11), TimedOut = Error(0x15),
                        NoListeners = Error(0x5F), ConnectionLost = Error(0xA6);
inline constexpr Attribute TimeoutAttribute = 0x3FFF001A;  // milliseconds
inline constexpr std::size_t DescriptionSize = 256;

/// The functions of an installed runtime; their names there begin with "vi".
struct Runtime {
    Status(VISA_CALL* OpenDefaultRM)(Object* manager);
    Status(VISA_CALL* Open)(Object manager, const char* resource, std::uint32_t mode, std::uint32_t timeout,
                            Object* instrument);
    Status(VISA_CALL* Close)(Object object);
    Status(VISA_CALL* SetAttribute)(Object object, Attribute attribute, AttributeState state);
    Status(VISA_CALL* Read)(Object instrument, std::uint8_t* bytes, std::uint32_t size, std::uint32_t* count);
    Status(VISA_CALL* Write)(Object instrument, const std::uint8_t* bytes, std::uint32_t size, std::uint32_t* count);
    Status(VISA_CALL* Clear)(Object instrument);
    Status(VISA_CALL* StatusDesc)(Object object, Status status, char* description);
};

/// Loads the runtime of this PC: visa64.dll or visa32.dll on Windows, libvisa.so elsewhere, or the library that the
/// environment variable CONDUIT_VISA names. It stays loaded, because runtimes keep threads of their own. Throws
/// OpeningFailure, which says what to install.
Runtime Load();

}  // namespace host::visa
