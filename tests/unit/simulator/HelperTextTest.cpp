#include "helper/MessageText.h"
#include "tests/unit/simulator/BackgroundApp.h"

using namespace test;
using winrt::Windows::Foundation::PropertyValue;

// Of the values that a helper may get, made by the simulator.
TEST(HelperText, ShowsStringsAndTheTypesOfOtherValues)
{
    sim::LocalDevice const host;
    EXPECT_EQ(helper::MessageText(ValueSet()), L"(empty)");
    EXPECT_EQ(helper::MessageText(SetOf({{L"NewMessage", winrt::box_value(L"done")},
                                         {L"NewCuri", winrt::box_value(L"")},
                                         {L"Number", winrt::box_value(5)},
                                         {L"Bytes", PropertyValue::CreateUInt8Array({1})},
                                         {L"Nothing", nullptr},
                                         {L"Set", ValueSet()}})),
              L"NewMessage=\"done\" NewCuri=\"\" Number=(Windows.Foundation.IReference`1<Int32>) "
              L"Bytes=(Windows.Foundation.IReferenceArray`1<UInt8>) Nothing=(null) "
              L"Set=(Windows.Foundation.Collections.ValueSet)");
}
