#include "simulator/runtime/values/ValueSet.h"

#include "simulator/runtime/Factory.h"

namespace sim
{

IInspectable MakeValueSetFactory()
{
    return winrt::make<DefaultFactory<ValueSet>>();
}

} // namespace sim
