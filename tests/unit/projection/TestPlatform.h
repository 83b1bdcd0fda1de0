#pragma once
#include <unknwn.h> // first: the projection then speaks classic COM, too
#include <winrt/base.h>

#include <functional>
#include <map>
#include <string>

namespace test
{

// While it lives, runtime classes come from here instead of the system.
class TestPlatform
{
  public:
    // Gives the factory, or throws what the activation shall fail with.
    using Activate = std::function<winrt::Windows::Foundation::IInspectable()>;

    TestPlatform();
    TestPlatform(TestPlatform const&) = delete;
    TestPlatform& operator=(TestPlatform const&) = delete;
    ~TestPlatform();

    void Provide(std::wstring const& className, Activate activate);

    // How often the class's factory was asked for.
    int Activations(std::wstring const& className) const;

  private:
    static int32_t __stdcall Handle(void* classId, winrt::guid const& id, void** factory) noexcept;

    static inline TestPlatform* s_current = nullptr;

    std::map<std::wstring, Activate> m_classes;
    std::map<std::wstring, int> m_activations;
};

// Counts the objects of a test that are alive: each implementation holds one.
class Alive
{
  public:
    Alive() noexcept { ++s_count; }
    Alive(Alive const&) noexcept { ++s_count; }
    ~Alive() { --s_count; }

    static int Count() noexcept { return s_count; }

  private:
    static inline std::atomic<int> s_count = 0;
};

} // namespace test
