#include "tests/unit/projection/TestPlatform.h"

namespace test
{

TestPlatform::TestPlatform()
{
    winrt::clear_factory_cache();
    s_current = this;
    winrt_activation_handler = &TestPlatform::Handle;
}

TestPlatform::~TestPlatform()
{
    winrt_activation_handler = nullptr;
    s_current = nullptr;
    winrt::clear_factory_cache();
}

void TestPlatform::Provide(std::wstring const& className, Activate activate)
{
    m_classes[className] = std::move(activate);
}

int TestPlatform::Activations(std::wstring const& className) const
{
    auto const found = m_activations.find(className);
    return found == m_activations.end() ? 0 : found->second;
}

int32_t __stdcall TestPlatform::Handle(void* classId, winrt::guid const& id, void** factory) noexcept
try
{
    std::wstring const className(reinterpret_cast<winrt::hstring const&>(classId));
    ++s_current->m_activations[className];
    auto const found = s_current->m_classes.find(className);
    if (found == s_current->m_classes.end())
    {
        throw winrt::hresult_class_not_registered();
    }
    return found->second().as(id, factory);
}
catch (...)
{
    return winrt::to_hresult();
}

} // namespace test
