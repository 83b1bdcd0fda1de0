#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// What a package declares of itself, as far as the app model acts on it.
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

        // Null when there is none of that id; ids are compared exactly.
        ParameterGroup const* Group(std::wstring_view id) const;
    };

    // A module of the package that has runtime classes of its own.
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
    std::vector<std::wstring> appServices; // their names; they are served by the application itself
    std::optional<DesktopComponent> desktopComponent;
    std::vector<InProcessServer> inProcessServers;
    bool mayRunFullTrust = false; // the capability that the desktop component needs

    // To be compared: 16 bits for each of the version's four parts.
    std::uint64_t VersionNumber() const;

    // Names are compared exactly.
    bool DeclaresAppService(std::wstring_view service) const;

    // Null for a class that the package does not declare.
    InProcessServer const* InProcessServerOf(std::wstring_view className) const;
};

// Reads AppxManifest.xml. Throws Error that names the file and what is missing or wrong in it. One application per
// package: the product has one.
Manifest ReadManifest(std::wstring const& path);

} // namespace sim
