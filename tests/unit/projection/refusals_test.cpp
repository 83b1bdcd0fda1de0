// What must not compile, one piece for each name that refusals_test.py defines; without a name all of it compiles.
#include <winrt/Windows.Foundation.h>

using namespace winrt;
using namespace winrt::Windows::Foundation;

struct Factory : implements<Factory, IActivationFactory>
{
    Factory() = default;
    explicit Factory(int) {}

    IInspectable ActivateInstance() const { return nullptr; }
};

struct Thing : implements<Thing, IStringable>
{
    hstring ToString() const { return L"thing"; }
};

struct NoThing
{
};

#ifdef FinalImplementation
struct LastThing final : implements<LastThing, IStringable>
{
    hstring ToString() const { return L"thing"; }
};
#endif

void Compile()
{
    hstring const text;
    [[maybe_unused]] IInspectable const factory = make<Factory>();
    [[maybe_unused]] auto const thing = make_self<Thing>();
#ifdef FactoryMadeWithAnArgument
    make<Factory>(1);
#endif
#ifdef FactoryItselfMadeWithAnArgument
    make_self<Factory>(1);
#endif
#ifdef ObjectOnTheStack
    Thing onTheStack;
#endif
#ifdef ObjectFromNew
    new Thing;
#endif
#ifdef FinalImplementation
    make<LastThing>();
#endif
#ifdef NoImplementation
    make<NoThing>();
#endif
#ifdef IdOfAnEnumeration
    [[maybe_unused]] auto const id = guid_of<AsyncStatus>();
#endif
#ifdef IdOfAnUnknownType
    [[maybe_unused]] auto const id = guid_of<NoThing>();
#endif
#ifdef StringFromNull
    hstring fromNull(nullptr);
#endif
#ifdef StringComparedWithNull
    static_cast<void>(text == nullptr);
#endif
#ifdef StringJoinedWithNull
    static_cast<void>(text + nullptr);
#endif
#ifdef StringFromAViewByItself
    hstring const fromView = std::wstring_view(L"view");
#endif
#ifdef ArgumentFromNull
    param::hstring const argument(nullptr);
#endif
#ifdef CodeOfTheSystem
    check_hresult(S_OK);
#endif
#ifdef IdOfTheSystem
    struct _GUID;
    [[maybe_unused]] _GUID const& id = guid_of<IStringable>();
#endif
}
