#ifndef VCRTI_FDD_PARSER_H
#define VCRTI_FDD_PARSER_H

#include "fdd_model.h"

#include <string>

namespace vcrti {

// Reads a 1516-2000 OMT XML file. Throws RtiError: CouldNotOpenFDD when the file cannot be
// read and ErrorReadingFDD when it is not a usable object model; both messages
// name the file.
FddModel parseFddFile(const std::wstring& path);

// The same on text already in memory; `name` stands for the file in messages.
FddModel parseFddText(const std::string& xml, const std::wstring& name);

}  // namespace vcrti

#endif
