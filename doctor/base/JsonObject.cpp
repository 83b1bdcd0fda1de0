#include "doctor/base/JsonObject.h"

#include "doctor/base/Json.h"

namespace doctor
{

std::string JsonObject(std::initializer_list<std::pair<std::string_view, std::string_view>> fields)
{
    auto object = Json::object();
    for (auto const& [name, text] : fields)
    {
        object[std::string(name)] = text;
    }
    return JsonText(object);
}

} // namespace doctor
