#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// The declarations of a package that the app model uses.
struct Manifest
{
    struct ParameterGroup
    {
        std::wstring id;
        std::wstring parameters;
    };

    struct DesktopComponent
    {
        std::wstring executable; // relative to the package's folder
        std::vector<ParameterGroup> groups;

        // Null for an unknown id; ids are compared exactly.
        ParameterGroup const* Group(std::wstring_view id) const;
    };

    // A module of the package that implements runtime classes.
    struct InProcessServer
    {
        std::wstring path; // relative to the package's folder
        std::vector<std::wstring> classes;

        bool Has(std::wstring_view className) const;
    };

    std::wstring name;
    std::wstring publisher;
    std::wstring version;
    std::wstring applicationId;
    std::wstring executable;               // relative to the package's folder
    std::wstring entryPoint;               // runtime class of the application
    std::vector<std::wstring> protocols;   // URI schemes, lower case
    std::vector<std::wstring> appServices; // names of those that the application itself serves
    std::optional<DesktopComponent> desktopComponent;
    std::vector<InProcessServer> inProcessServers;
    bool mayRunFullTrust = false; // the capability that the desktop component needs

    // For comparisons: 16 bits for each of the version's four parts.
    std::uint64_t VersionNumber() const;

    // Names are compared exactly.
    bool DeclaresAppService(std::wstring_view service) const;

    // Null for a class that the package does not declare.
    InProcessServer const* InProcessServerOf(std::wstring_view className) const;
};

// Reads AppxManifest.xml. Throws Error that names the file and what is missing or wrong in it. Supports one application
// per package, as the product has.
Manifest ReadManifest(std::wstring const& path);

// The same with the bytes of that file.
Manifest ParseManifest(std::string_view bytes, std::wstring const& path);

} // namespace sim
