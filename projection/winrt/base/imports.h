// What is imported from the Windows Runtime itself. The system's own headers for these declare names of their own that
// collide with the projected ones.
#pragma once
#include "winrt/base/platform.h"

extern "C"
{
    __declspec(dllimport) HRESULT __stdcall WindowsCreateString(wchar_t const* text, UINT32 size, HSTRING* result);
    __declspec(dllimport) HRESULT __stdcall WindowsCreateStringReference(wchar_t const* text, UINT32 size,
                                                                         HSTRING_HEADER* header, HSTRING* result);
    __declspec(dllimport) HRESULT __stdcall WindowsDeleteString(HSTRING text);
    __declspec(dllimport) HRESULT __stdcall WindowsDuplicateString(HSTRING text, HSTRING* result);
    __declspec(dllimport) wchar_t const* __stdcall WindowsGetStringRawBuffer(HSTRING text, UINT32* size);
    __declspec(dllimport) UINT32 __stdcall WindowsGetStringLen(HSTRING text);
    __declspec(dllimport) HRESULT __stdcall WindowsPreallocateStringBuffer(UINT32 size, wchar_t** characters,
                                                                           HSTRING_BUFFER* buffer);
    __declspec(dllimport) HRESULT __stdcall WindowsPromoteStringBuffer(HSTRING_BUFFER buffer, HSTRING* result);
    __declspec(dllimport) HRESULT __stdcall WindowsDeleteStringBuffer(HSTRING_BUFFER buffer);
    __declspec(dllimport) HRESULT __stdcall RoGetActivationFactory(HSTRING classId, REFIID id, void** factory);
    // The first parameter is an AgileReferenceOptions, of which 0 is the default; it has an enumeration's size.
    __declspec(dllimport) HRESULT __stdcall RoGetAgileReference(int options, REFIID id, IUnknown* object,
                                                                void** reference);
}
