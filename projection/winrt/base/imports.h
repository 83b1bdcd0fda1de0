// What is imported from the system, declared with the projection's own types: each function under its own name, bound
// to the import of that name, so that the system's headers may be included beside this one, before or after it.
#pragma once
#include "winrt/base/platform.h"

namespace winrt
{

struct guid;

// Units of 100 ns since 1 January 1601 UTC.
struct file_time
{
    uint64_t value{};
};

namespace impl::os
{

struct string_header // room for what a string reference needs
{
    void* reserved[3];
};

using pool_callback = void(__stdcall*)(void* instance, void* context) noexcept;

// Strings
__declspec(dllimport) int32_t __stdcall WindowsCreateString(wchar_t const* text, uint32_t size, void** result) noexcept
    __asm__("WindowsCreateString");
__declspec(dllimport) int32_t __stdcall WindowsCreateStringReference(wchar_t const* text, uint32_t size,
                                                                     string_header* header, void** result) noexcept
    __asm__("WindowsCreateStringReference");
__declspec(dllimport) int32_t __stdcall WindowsDeleteString(void* text) noexcept __asm__("WindowsDeleteString");
__declspec(dllimport) int32_t __stdcall WindowsDuplicateString(void* text, void** result) noexcept
    __asm__("WindowsDuplicateString");
__declspec(dllimport) wchar_t const* __stdcall WindowsGetStringRawBuffer(void* text, uint32_t* size) noexcept
    __asm__("WindowsGetStringRawBuffer");
__declspec(dllimport) uint32_t __stdcall WindowsGetStringLen(void* text) noexcept __asm__("WindowsGetStringLen");
__declspec(dllimport) int32_t __stdcall WindowsPreallocateStringBuffer(uint32_t size, wchar_t** characters,
                                                                       void** buffer) noexcept
    __asm__("WindowsPreallocateStringBuffer");
__declspec(dllimport) int32_t __stdcall WindowsPromoteStringBuffer(void* buffer, void** result) noexcept
    __asm__("WindowsPromoteStringBuffer");
__declspec(dllimport) int32_t __stdcall WindowsDeleteStringBuffer(void* buffer) noexcept
    __asm__("WindowsDeleteStringBuffer");
__declspec(dllimport) int32_t __stdcall MultiByteToWideChar(uint32_t codePage, uint32_t flags, char const* narrow,
                                                            int32_t narrowSize, wchar_t* wide,
                                                            int32_t wideSize) noexcept __asm__("MultiByteToWideChar");
__declspec(dllimport) int32_t __stdcall WideCharToMultiByte(uint32_t codePage, uint32_t flags, wchar_t const* wide,
                                                            int32_t wideSize, char* narrow, int32_t narrowSize,
                                                            char const* replacement, int32_t* wasReplaced) noexcept
    __asm__("WideCharToMultiByte");

// Objects and apartments
__declspec(dllimport) int32_t __stdcall RoGetActivationFactory(void* classId, guid const& id, void** factory) noexcept
    __asm__("RoGetActivationFactory");
__declspec(dllimport) int32_t __stdcall RoGetAgileReference(int32_t options, guid const& id, void* object,
                                                            void** reference) noexcept __asm__("RoGetAgileReference");
__declspec(dllimport) int32_t __stdcall CoInitializeEx(void* reserved, uint32_t type) noexcept
    __asm__("CoInitializeEx");
__declspec(dllimport) void __stdcall CoUninitialize() noexcept __asm__("CoUninitialize");
__declspec(dllimport) int32_t __stdcall CoIncrementMTAUsage(void** cookie) noexcept __asm__("CoIncrementMTAUsage");
__declspec(dllimport) int32_t __stdcall CoGetApartmentType(int32_t* type, int32_t* qualifier) noexcept
    __asm__("CoGetApartmentType");
__declspec(dllimport) int32_t __stdcall CoGetObjectContext(guid const& id, void** context) noexcept
    __asm__("CoGetObjectContext");
__declspec(dllimport) void* __stdcall CoTaskMemAlloc(size_t size) noexcept __asm__("CoTaskMemAlloc");
__declspec(dllimport) void __stdcall CoTaskMemFree(void* memory) noexcept __asm__("CoTaskMemFree");

// Errors and time
__declspec(dllimport) uint32_t __stdcall GetLastError() noexcept __asm__("GetLastError");
__declspec(dllimport) uint32_t __stdcall FormatMessageW(uint32_t flags, void const* source, uint32_t code,
                                                        uint32_t language, wchar_t* text, uint32_t size,
                                                        void* arguments) noexcept __asm__("FormatMessageW");
__declspec(dllimport) void __stdcall GetSystemTimeAsFileTime(file_time* time) noexcept
    __asm__("GetSystemTimeAsFileTime");

// Handles, locks and threads
__declspec(dllimport) int32_t __stdcall CloseHandle(void* handle) noexcept __asm__("CloseHandle");
__declspec(dllimport) void* __stdcall CreateEventW(void* security, int32_t manualReset, int32_t isSet,
                                                   wchar_t const* name) noexcept __asm__("CreateEventW");
__declspec(dllimport) int32_t __stdcall SetEvent(void* event) noexcept __asm__("SetEvent");
__declspec(dllimport) uint32_t __stdcall WaitForSingleObject(void* handle, uint32_t milliseconds) noexcept
    __asm__("WaitForSingleObject");
__declspec(dllimport) void __stdcall AcquireSRWLockExclusive(void** lock) noexcept __asm__("AcquireSRWLockExclusive");
__declspec(dllimport) void __stdcall ReleaseSRWLockExclusive(void** lock) noexcept __asm__("ReleaseSRWLockExclusive");
__declspec(dllimport) uint8_t __stdcall TryAcquireSRWLockExclusive(void** lock) noexcept
    __asm__("TryAcquireSRWLockExclusive");
__declspec(dllimport) void __stdcall AcquireSRWLockShared(void** lock) noexcept __asm__("AcquireSRWLockShared");
__declspec(dllimport) void __stdcall ReleaseSRWLockShared(void** lock) noexcept __asm__("ReleaseSRWLockShared");
__declspec(dllimport) int32_t __stdcall TrySubmitThreadpoolCallback(pool_callback callback, void* context,
                                                                    void* environment) noexcept
    __asm__("TrySubmitThreadpoolCallback");

inline constexpr uint32_t no_error = 0;                  // ERROR_SUCCESS
inline constexpr uint32_t infinite = 0xFFFFFFFF;         // INFINITE
inline constexpr uint32_t utf8 = 65001;                  // CP_UTF8
inline constexpr uint32_t invalid_characters_fail = 0x8; // MB_ERR_INVALID_CHARS
inline constexpr uint32_t message_of_system = 0x1200;    // FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS
inline constexpr int32_t no_apartment_type = -1;         // APTTYPE_CURRENT
inline constexpr int32_t multi_threaded_type = 1;        // APTTYPE_MTA

} // namespace impl::os

} // namespace winrt
