#pragma once
#include "fuzz/Choices.h"
#include "simulator/base/XmlElement.h"

#include <string>

namespace fuzz
{

// An element as XML in UTF-8, in one of the many ways that mean the same: prefixes or default namespaces, quotes,
// CDATA, references, comments, white space. All its attributes are written without a prefix.
std::string WrittenXml(sim::XmlElement const& root, Choices& choices);

// Without the attributes that declare namespaces, which the reader tells with the others.
sim::XmlElement WithoutDeclarations(sim::XmlElement element);

bool AreEqual(sim::XmlElement const& one, sim::XmlElement const& other);

} // namespace fuzz
