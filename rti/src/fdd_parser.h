#ifndef VCRTI_FDD_PARSER_H
#define VCRTI_FDD_PARSER_H

#include "fdd_model.h"

#include <cstddef>
#include <string>
#include <vector>

namespace vcrti {

// Larger object models are refused before they are parsed: the published ones are well
// below a megabyte each.
constexpr std::size_t kMaxFddBytes = std::size_t{16} << 20;

// Reads one OMT XML file, of the 1516-2000 format or a 1516-2010 FOM module (names and
// properties as attributes or as child elements). Throws RtiError: CouldNotOpenFDD when the
// file cannot be read and ErrorReadingFDD when it is not a usable object model; both
// messages name the file. Classes that name nothing but their name are kept as scaffolding
// (FddClass::module is kNoClass); only the 2010 format's datatypes are kept.
FddModel parseFddFile(const std::wstring& path);

// The same on text already in memory; `name` stands for the file in messages.
FddModel parseFddText(const std::string& xml, const std::wstring& name);

// Reads FOM modules in the order given and merges them, after the standard MIM, into one
// model (see mergeModules in fom_modules.h). Throws RtiError: CouldNotOpenFDD or
// ErrorReadingFDD for a file, InconsistentFDD when a module conflicts with another or needs
// what no module before it defines.
FddModel readFomModules(const std::vector<std::wstring>& paths);

// Reads the modules a joining federate brings, each on its own, to be merged into the
// federation's model where it lives.
std::vector<FddModel> parseFomModules(const std::vector<std::wstring>& paths);

}  // namespace vcrti

#endif
