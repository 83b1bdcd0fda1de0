#include "explore/kill/watch/Stubs.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>
#include <windows.h>

namespace explore::kill
{

namespace
{

constexpr std::size_t stubSize = 32;
constexpr int any = -1;

// mov r10,rcx; mov eax,NUMBER; test byte [7FFE0308],1; jne +3; syscall; ret; jmp +1; ret; call [7FFE1000]; ret
constexpr int stubForm[stubSize] = {0x4C, 0x8B, 0xD1, 0xB8, any,  any,  0x00, 0x00, 0xF6, 0x04, 0x25,
                                    0x08, 0x03, 0xFE, 0x7F, 0x01, 0x75, 0x03, 0x0F, 0x05, 0xC3, 0xEB,
                                    0x01, 0xC3, 0xFF, 0x14, 0x25, 0x00, 0x10, 0xFE, 0x7F, 0xC3};

bool IsStub(unsigned char const* code)
{
    return std::equal(std::begin(stubForm), std::end(stubForm), code,
                      [](int expected, unsigned char byte) { return expected == any || expected == byte; });
}

unsigned char* AllocateCode(std::size_t size)
{
    return static_cast<unsigned char*>(VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_EXECUTE_READWRITE));
}

// Writes machine code.
class Writer
{
  public:
    explicit Writer(unsigned char* at) : m_at(at) {}

    void Bytes(std::initializer_list<unsigned char> bytes) { m_at = std::ranges::copy(bytes, m_at).out; }

    template <typename Value>
    void Write(Value value)
    {
        std::memcpy(m_at, static_cast<void const*>(&value), sizeof value);
        m_at += sizeof value;
    }

  private:
    unsigned char* m_at;
};

// Saves the arguments, calls onCall(stub, arguments), takes them back and jumps to what it returned.
void WriteThunk(unsigned char* at, std::uint32_t stub, OnCall onCall)
{
    Writer code(at);
    code.Bytes({0x51, 0x52, 0x41, 0x50, 0x41, 0x51}); // push rcx, rdx, r8, r9
    code.Bytes({0x48, 0x89, 0xE2});                   // mov rdx, rsp
    code.Bytes({0x48, 0x83, 0xEC, 0x28});             // sub rsp, 28h
    code.Bytes({0xB9});                               // mov ecx, stub
    code.Write(stub);
    code.Bytes({0x48, 0xB8}); // mov rax, onCall
    code.Write(onCall);
    code.Bytes({0xFF, 0xD0});                         // call rax
    code.Bytes({0x48, 0x83, 0xC4, 0x28});             // add rsp, 28h
    code.Bytes({0x41, 0x59, 0x41, 0x58, 0x5A, 0x59}); // pop r9, r8, rdx, rcx
    code.Bytes({0xFF, 0xE0});                         // jmp rax
}

constexpr std::size_t thunkSize = 64;

void WriteJump(unsigned char* at, unsigned char const* to)
{
    Writer code(at);
    code.Bytes({0xFF, 0x25, 0, 0, 0, 0}); // jmp [rip]
    code.Write(to);
}

// What a module exports by name.
template <typename Function>
void ForEachExport(unsigned char* module, Function function)
{
    auto const* const dos = reinterpret_cast<IMAGE_DOS_HEADER const*>(module);
    auto const* const headers = reinterpret_cast<IMAGE_NT_HEADERS const*>(module + dos->e_lfanew);
    auto const& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    auto const* const exports = reinterpret_cast<IMAGE_EXPORT_DIRECTORY const*>(module + directory.VirtualAddress);
    auto const* const names = reinterpret_cast<DWORD const*>(module + exports->AddressOfNames);
    auto const* const ordinals = reinterpret_cast<WORD const*>(module + exports->AddressOfNameOrdinals);
    auto const* const addresses = reinterpret_cast<DWORD const*>(module + exports->AddressOfFunctions);
    for (DWORD at = 0; at < exports->NumberOfNames; ++at)
    {
        function(reinterpret_cast<char const*>(module + names[at]), module + addresses[ordinals[at]]);
    }
}

} // namespace

std::vector<Stub> FindStubs()
{
    std::vector<Stub> stubs;
    ForEachExport(reinterpret_cast<unsigned char*>(GetModuleHandleW(L"ntdll.dll")),
                  [&](char const* name, unsigned char* code) {
                      if (std::string_view(name).starts_with("Nt") && IsStub(code))
                      {
                          stubs.push_back({name, code, nullptr});
                      }
                  });
    auto* copies = AllocateCode(stubs.size() * stubSize);
    for (auto& stub : stubs)
    {
        std::memcpy(copies, stub.code, stubSize);
        stub.original = copies;
        copies += stubSize;
    }
    return stubs;
}

void Replace(std::vector<Stub> const& stubs, OnCall onCall)
{
    // Made writable at once, since that is a system call itself.
    auto const [first, last] = std::ranges::minmax(stubs, {}, &Stub::code);
    DWORD before = 0;
    VirtualProtect(first.code, static_cast<SIZE_T>(last.code - first.code) + stubSize, PAGE_EXECUTE_READWRITE, &before);
    auto* thunk = AllocateCode(stubs.size() * thunkSize);
    for (std::uint32_t number = 0; auto const& stub : stubs)
    {
        WriteThunk(thunk, number++, onCall);
        WriteJump(stub.code, thunk);
        thunk += thunkSize;
    }
}

} // namespace explore::kill
